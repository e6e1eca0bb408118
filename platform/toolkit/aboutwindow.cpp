#include "aboutwindow.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>
#include <scaling.h>

namespace
{

constexpr double NameFontFactor = 1.6;
constexpr float IconFontHeights = 4.0f;

AboutWindow::Lines &versionLines()
{
    static AboutWindow::Lines lines;
    return lines;
}

AboutWindow::Lines &buildLines()
{
    static AboutWindow::Lines lines;
    return lines;
}

/// A label that shows \a text to the letter.
QLabel *newLabel(const QString &text)
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    return label;
}

QGroupBox *newList(const QString &title, const AboutWindow::Lines &lines)
{
    auto *box = new QGroupBox(title);
    auto *form = new QFormLayout(box);
    for (const auto &line : lines) {
        QLabel *label = newLabel(line.first);
        label->setForegroundRole(QPalette::PlaceholderText);
        QLabel *text = newLabel(line.second);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        text->setWordWrap(true);
        form->addRow(label, text);
    }
    if (lines.isEmpty())
        box->hide();
    return box;
}

QString asText(const AboutWindow::Lines &lines)
{
    QString text;
    for (const auto &line : lines)
        text += line.first + QLatin1String(": ") + line.second + QLatin1Char('\n');
    return text;
}

} // namespace

AboutWindow::AboutWindow(QWidget *parent)
    : QDialog(parent)
    , m_versions(versions())
    , m_buildInfo(buildInfo())
{
    setWindowTitle(tr("About %1").arg(QGuiApplication::applicationDisplayName()));
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(fontHeight(this));
    addHeading(layout);
    addLists(layout);
    addButtons(layout);
}

void AboutWindow::addVersion(const QString &label, const QString &text)
{
    versionLines().append({label, text});
}

void AboutWindow::addBuildInfo(const QString &label, const QString &text)
{
    buildLines().append({label, text});
}

AboutWindow::Lines AboutWindow::versions()
{
    return versionLines();
}

AboutWindow::Lines AboutWindow::buildInfo()
{
    return buildLines();
}

QString AboutWindow::plainText() const
{
    return asText(m_versions) + QLatin1Char('\n') + asText(m_buildInfo);
}

void AboutWindow::copyToClipboard() const
{
    QGuiApplication::clipboard()->setText(plainText());
}

void AboutWindow::addHeading(QBoxLayout *layout)
{
    auto *heading = new QHBoxLayout;
    layout->addLayout(heading);
    const QIcon icon = QGuiApplication::windowIcon();
    if (!icon.isNull()) {
        auto *picture = new QLabel;
        picture->setPixmap(icon.pixmap(preferredIconSize(IconFontHeights, this)));
        heading->addWidget(picture);
    }

    QLabel *name = newLabel(QGuiApplication::applicationDisplayName());
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * NameFontFactor);
    large.setBold(true);
    name->setFont(large);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(name);
    if (!QCoreApplication::applicationVersion().isEmpty())
        texts->addWidget(newLabel(QCoreApplication::applicationVersion()));
    heading->addLayout(texts, 1);
}

void AboutWindow::addLists(QBoxLayout *layout)
{
    auto *lists = new QWidget;
    auto *column = new QVBoxLayout(lists);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(newList(tr("Versions"), m_versions));
    column->addWidget(newList(tr("Build"), m_buildInfo));
    column->addStretch();

    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(lists);
    area->setMinimumWidth(lists->sizeHint().width() + fontHeight(this));
    area->setMinimumHeight(qMin(lists->sizeHint().height(), screen()->availableSize().height() / 2));
    layout->addWidget(area, 1);
}

void AboutWindow::addButtons(QBoxLayout *layout)
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton *copy = buttons->addButton(tr("Copy"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, &AboutWindow::copyToClipboard);
    connect(buttons, &QDialogButtonBox::rejected, this, &AboutWindow::reject);
    layout->addWidget(buttons);
}
