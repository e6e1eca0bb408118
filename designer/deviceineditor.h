/// \file
/// A device of the catalogue while a form is edited.
#pragma once

#include <QStringList>
#include <localdevice.h>

/// A LocalDevice that can be seen and says which device it is bound to and through which ports. Without a
/// meta-object of its own, so that a form knows it as the LocalDevice that it becomes. Shown on anything
/// but a form that is edited it hides itself, as it does on a panel.
class DeviceInEditor : public LocalDevice
{
public:
    explicit DeviceInEditor(QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();

    QStringList m_shown;
};

/// The lines that say what \a device is bound to: the device, or why there is none, and its ports.
QStringList bindingText(const LocalDevice &device);
