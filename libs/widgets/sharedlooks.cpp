#include "sharedlooks.h"

#include <QGuiApplication>
#include <QVector>

namespace
{

using Forget = void (*)();

/// Those who keep something, while there is an application.
class Keepers : public QObject
{
public:
    ~Keepers() override { qRemovePostRoutine(forgetAtTheEnd); }

    void add(Forget forget)
    {
        if (m_forgets.contains(forget))
            return;
        if (m_forgets.isEmpty()) {
            qAddPostRoutine(forgetAtTheEnd); // Pictures must not outlive the application.
            connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, this, &Keepers::forgetAll);
        }
        m_forgets << forget;
    }

    static Keepers &instance()
    {
        static Keepers keepers;
        return keepers;
    }

private:
    static void forgetAtTheEnd()
    {
        instance().forgetAll();
        instance().m_forgets.clear();
    }

    void forgetAll()
    {
        for (const Forget forget : qAsConst(m_forgets))
            forget();
    }

    QVector<Forget> m_forgets;
};

} // namespace

void forgetWithFonts(void (*forget)())
{
    Keepers::instance().add(forget);
}
