/// \file
/// The panel's numeric setter.
#pragma once

#include <QGroupBox>
#include <kelwidgetsexport.h>

#include <memory>

class GroupBoxPicture;
class SliderBarFrame;
class Ui_KelSlider;

/// Sets a number by a bar that is pressed or dragged and by large buttons: Min, Max, one step down,
/// zero, one step up. The value is a whole multiple of the step ("precision") and stays between the
/// bounds, the maximum counting more; so are the bounds multiples of the step. The caption is a text
/// in which "%v" stands for the value. Numbers that are not a number are ignored. GUI thread only.
class KEL_WIDGETS_EXPORT KelSlider : public QGroupBox
{
    Q_OBJECT
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly)
    Q_PROPERTY(bool showMinMax READ showMinMax WRITE setShowMinMax)
    Q_PROPERTY(bool showDecInc READ showDecInc WRITE setShowDecInc)
    Q_PROPERTY(bool titleInsideBar READ titleInsideBar WRITE setTitleInsideBar)
    Q_PROPERTY(BarStyle barStyle READ barStyle WRITE setBarStyle)
    Q_PROPERTY(double titleSize READ titleSize WRITE setTitleSize)
    Q_PROPERTY(double minimum READ minimum WRITE setMinimum)
    Q_PROPERTY(double maximum READ maximum WRITE setMaximum)
    Q_PROPERTY(double value READ value WRITE setValue)
    Q_PROPERTY(double precision READ precision WRITE setPrecision)
    Q_PROPERTY(QString title READ title WRITE setTitle)
    Q_PROPERTY(int clickID READ clickID WRITE setClickID)
    Q_PROPERTY(int setID READ setID WRITE setSetID)
    Q_PROPERTY(int spacing READ spacing WRITE setSpacing)
    Q_PROPERTY(QSize minimumButtonSize READ minimumButtonSize WRITE setMinimumButtonSize)

public:
    /// From where the bar is filled: from zero where the range crosses it, from the left, from the right.
    enum BarStyle : int { From0 = 0, MinToValue = 1, MaxToValue = 2 };
    Q_ENUM(BarStyle)

    explicit KelSlider(QWidget *parent = nullptr);
    ~KelSlider() override;

    bool readOnly() const { return m_readOnly; }
    bool showMinMax() const { return m_showMinMax; }
    bool showDecInc() const { return m_showDecInc; }
    bool titleInsideBar() const { return m_titleInsideBar; }
    BarStyle barStyle() const { return m_barStyle; }
    double titleSize() const { return m_titleSize; } ///< Share of the bar's smaller side.
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    double value() const { return m_value; }
    double precision() const { return m_precision; } ///< The step, above 0.
    QString title() const { return m_title; }        ///< With "%v" where the value goes.
    int clickID() const { return m_clickID; }        ///< Carried by the numbered signals.
    int setID() const { return m_setID; }            ///< Number that the numbered slots listen to.
    int spacing() const;                             ///< Between the buttons and the bar, pixels.
    QSize minimumButtonSize() const;

    /// Builds the caption anew and announces the value, changed or not.
    void updateCaption();

    /// Paints the bar; only while the bar is being painted.
    void drawBar();

public Q_SLOTS:
    void enable();
    void disable();
    void setClickID(int id);
    void setSetID(int id);
    void setSpacing(int value);
    void setMinimumButtonSize(QSize sz); ///< Of all five buttons.
    void setValue(double val);           ///< Rounded to the step, kept between the bounds.
    void setValue(int val);
    void setTitle(QString text);
    void setPrecision(double precision); ///< 0 is ignored, a sign is dropped. Rounds bounds and value anew.
    void setPrecision(int precision);
    void setMinimum(double min); ///< Rounded to the step; a smaller value is lifted to it.
    void setMinimum(int min);
    void setMaximum(double max); ///< Rounded to the step; a larger value is lowered to it.
    void setMaximum(int max);
    void setReadOnly(bool yes);   ///< A read-only slider ignores the operator, not the program.
    void setShowMinMax(bool yes); ///< Whether Min and Max are there.
    void setShowDecInc(bool yes); ///< Whether the step buttons are there, until readOnly changes.

    /// Numbered twins: they act as the plain slot when \a set_id is setID.
    void setValueID(int set_id, double val);
    void setValueID(int set_id, int val);
    void setMinimumID(int set_id, double min);
    void setMinimumID(int set_id, int min);
    void setMaximumID(int set_id, double max);
    void setMaximumID(int set_id, int max);
    void setReadOnlyID(int set_id, bool yes);
    void setShowMinMaxID(int set_id, bool yes);
    void enableID(int set_id);
    void disableID(int set_id);

    void clickZero(); ///< As its button, also while read-only; so with the next four.
    void clickMin();
    void clickMax();
    void clickInc();
    void clickDec();
    void setBarStyle(KelSlider::BarStyle s);
    void setTitleInsideBar(bool yes); ///< Caption in the bar instead of above it.
    void setTitleSize(double size_);

Q_SIGNALS:
    void valueChanged(double val);
    void valueChanged(int val); ///< Truncated toward zero.
    void valueChangedID(int id, double val);
    void valueChangedID(int id, int val);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void on_qt_pbZero_clicked();
    void on_qt_pbDec_clicked();
    void on_qt_pbInc_clicked();
    void on_qt_pbMax_clicked();
    void on_qt_pbMin_clicked();

private:
    double snap(double number) const;
    void pressBar(int x);
    void rangeChanged();
    void showBounds();

    std::unique_ptr<Ui_KelSlider> m_ui;
    std::unique_ptr<GroupBoxPicture> m_boxPicture; // what lies under the bar
    std::unique_ptr<SliderBarFrame> m_frame;
    bool m_crossesZero = false; // As the bounds were when they were last set.
    bool m_readOnly = false;
    bool m_showMinMax = true;
    bool m_showDecInc = true;
    bool m_titleInsideBar = false;
    double m_precision = 1.0;
    double m_shownValue = 0.0; // The value that the caption was built for.
    double m_minimum = 0.0;
    double m_maximum = 255.0;
    double m_value = 0.0;
    double m_titleSize = 0.5;
    double m_scale = 1.0;
    int m_clickID = -1;
    int m_setID = -1;
    int m_decimals = 0; // Of the value in the caption.
    QString m_title;
    QString m_caption;
    BarStyle m_barStyle = From0;
};
