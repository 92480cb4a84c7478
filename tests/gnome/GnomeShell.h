#pragma once

#include <QDBusMessage>
#include <QProcess>
#include <QStringList>

// A headless GNOME Shell on the private session bus, with Tolvar's extension
// installed under the private HOME the way `cmake --install` puts it there.
class GnomeShell
{
public:
    // The sources the shell is set up with, as the extension names them.
    static const QStringList sources;

    GnomeShell() = default;
    ~GnomeShell();
    GnomeShell(const GnomeShell &) = delete;
    GnomeShell &operator=(const GnomeShell &) = delete;

    // Starts the shell and waits until it runs with all its sources: through
    // the extension when it is enabled, else through the IBus it starts.
    // Empty on success, else why not.
    QString start(bool extensionEnabled);

    QDBusMessage callExtension(const QString &method, const QVariantList &arguments = {}) const;
    QString current() const;
    QStringList sourceIDs() const;
    // Sets the shell's sources by their GSettings pairs, such as "('xkb','us')".
    static bool configure(const QStringList &pairs);
    static QString setting(const QString &schema, const QString &key);

private:
    QProcess m_systemBus;
    QProcess m_shell;
};
