// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QStringList>

inline QString operator""_s(const char16_t* text, size_t size)
{
    return QString::fromUtf16(text, int(size));
}

// The terminal of a session, and its directory: that accepts alice and bob, and what it answers is in the password.
struct Terminal {
    QString argument;    // of the program: "force" for the remote dialog, none or "setup" for the local window
    QString savedUser;   // whose session is up; empty for none
    QStringList servers; // those named "dead..." don't answer
};

// What a person in front of the terminal expects of it, input by input: the window in front and all that is in it, the
// commands that were run, the saved users, and the exit status. Names are those of objects, or texts where there are
// none.
class SessionModel {
public:
    explicit SessionModel(const Terminal& terminal) : m_terminal(terminal), m_windows{Window()}
    {
        if (terminal.argument == u"force"_s)
            Enter(terminal.savedUser.isEmpty() ? Mode::Login : Mode::Unlock);
        else
            AskForLocalPassword();
        m_saved = terminal.savedUser.isEmpty() ? QString() : terminal.savedUser + u"||"_s;
    }

    // Inputs; keys by their names in X, however long they are held.
    void Type(const QString& text)
    {
        if (Order().contains(u"No"_s) && text.contains(u'n'))
            return Push(u"No"_s); // a box takes the letter of a button without Alt
        if (!IsField(Focus()) || FocusField().readOnly)
            return;
        FocusField() = {FocusField().selected ? text : FocusField().text + text};
        if (Focus() == u"leUserName"_s)
            m_windows.last().fields[u"leOldPassword"_s].text.clear(); // another user's is forgotten
    }

    void Press(const QString& key)
    {
        if (key == u"Escape"_s) {
            Escape();
        } else if (key.endsWith(u"Tab"_s)) {
            const int step = key == u"Tab"_s ? 1 : Order().size() - 1;
            SetFocus(Order().at((Order().indexOf(Focus()) + step) % Order().size()));
            if (IsField(Focus()))
                FocusField().selected = !FocusField().text.isEmpty();
        } else if (IsField(Focus())) { // Return; blanks are typed nowhere
            Submit();
        } else if (!IsLocal() || Focus() != u"Cancel"_s || key != u"Return"_s) { // which does nothing there
            Push(Focus());
        }
    }

    void Click(const QString& name)
    {
        SetFocus(name);
        if (!IsField(name))
            Push(name);
    }

    // Counts once on a button; takes the whole word in a field.
    void ClickTwice(const QString& name)
    {
        Click(name);
        if (IsField(name))
            FocusField().selected = !FocusField().text.isEmpty();
    }

    void LetThirtySecondsPass()
    {
        if (IsChangingUser() && !IsChecking())
            Enter(Mode::Unlock);
    }

    // Of the window in front; and what else the session has left so far.
    QString State() const
    {
        QStringList parts{Title()};
        QStringList order = Order();
        order.sort();
        for (const QString& name : order) {
            const Field field = m_windows.last().fields.value(name);
            parts += IsField(name) ? name + u"="_s + field.text + (field.selected ? u"*"_s : QString()) : name;
        }
        parts += u"focus "_s + Focus();
        return parts.join(u';');
    }

    QString Traces() const
    {
        QStringList events = m_events;
        events.sort(); // the program waits for none of them
        return QStringList{QString::number(m_shutdowns), m_saved,           m_handedOver,
                           m_binds.join(u' '),           events.join(u' '), m_changes.join(u' ')}
            .join(u';');
    }

    QString Title() const { return m_windows.last().title; }
    QStringList Order() const { return m_windows.last().order; } // of Tab
    QString Focus() const { return m_windows.last().focus; }
    bool IsField(const QString& name) const { return m_windows.last().fields.contains(name); }
    bool IsScreen() const { return m_windows.size() == 1; } // not a box or dialog above it
    bool IsLocal() const { return m_mode == Mode::Local; }
    bool IsChangingUser() const { return m_mode == Mode::ChangeUser; }
    int Status() const { return m_status; } // -1 while the program runs

    // Whether what is typed into the field with the focus will stand alone.
    bool IsEmpty() const
    {
        const Field field = m_windows.last().fields.value(Focus());
        return field.text.isEmpty() || field.selected;
    }

private:
    struct Field {
        QString text;
        bool selected = false; // all of it
        bool readOnly = false;
    };
    struct Window {
        QString title;
        QStringList order;
        QString focus;
        QMap<QString, Field> fields;
    };
    enum class Mode { Local, Login, Unlock, ChangeUser };

    Window& Screen() { return m_windows.first(); }
    Field& FocusField() { return m_windows.last().fields[Focus()]; }
    QString User() const { return m_windows.first().fields[u"leUser"_s].text; }
    QString Password() const { return m_windows.first().fields[u"lePwd"_s].text; }
    bool IsChecking() const { return Title() == u"Password Change?"_s || Title() == u"Password Change/Reset"_s; }

    void SetFocus(const QString& name)
    {
        if (IsField(Focus()))
            FocusField().selected = false;
        m_windows.last().focus = name;
    }

    void Submit()
    {
        if (IsLocal())
            CheckLocally();
        else
            IsChecking() ? ChangePassword() : SignIn();
    }

    void Push(const QString& button)
    {
        if (button == u"Yes"_s || button == u"No"_s) {
            m_windows.removeLast();
            button == u"Yes"_s ? AskForNewPassword() : Accept();
        } else if (IsChecking()) {
            button == u"pushButton"_s ? ChangePassword() : LeaveSetPassword(false);
        } else if (m_windows.size() > 1) {
            CloseRefusal();
        } else if (IsLocal()) {
            button == u"OK"_s ? CheckLocally() : void(m_status = 1);
        } else if (button == u"login"_s || button == u"Unlock"_s) {
            SignIn();
        } else if (button == u"logout"_s) {
            m_status = 7;
        } else {
            Enter(button == u"change"_s ? Mode::ChangeUser : Mode::Unlock);
        }
    }

    void Escape()
    {
        if (IsChecking())
            Order().contains(u"No"_s) ? Push(u"No"_s) : LeaveSetPassword(false);
        else if (m_windows.size() > 1)
            CloseRefusal();
        else if (IsChangingUser())
            LetThirtySecondsPass();
        else if (!IsLocal())
            ++m_shutdowns;
    }

    void AskForLocalPassword()
    {
        const bool isSetup = m_terminal.argument == u"setup"_s;
        const QStringList order{u"lePasswordEntry"_s, u"OK"_s, u"Cancel"_s};
        Screen() = {u"Login"_s, order.mid(0, isSetup ? 3 : 2), order[0], {{order[0], {}}}};
    }

    // An empty password is not checked.
    void CheckLocally()
    {
        const QString password = std::exchange(Screen().fields[u"lePasswordEntry"_s].text, {});
        if (password == u"local"_s)
            m_status = 0;
        else if (!password.isEmpty())
            ShowBox(u"Login Error"_s);
        if (!password.isEmpty())
            m_events += (m_status == 0 ? u"sec02|localuser"_s : u"sec01|localuser"_s);
    }

    void Enter(Mode mode)
    {
        const bool unlock = mode == Mode::Unlock;
        QStringList order{u"leUser"_s, u"lePwd"_s};
        order += unlock ? QStringList{u"Unlock"_s, u"change"_s, u"logout"_s} : QStringList{u"login"_s};
        if (mode == Mode::ChangeUser)
            order += u"cancel"_s;
        const Field user{unlock ? m_terminal.savedUser : QString(), false, unlock};
        Screen() = {u"User Authentication"_s, order, order[unlock], {{order[0], user}, {order[1], {}}}};
        m_mode = mode;
    }

    void SignIn()
    {
        for (const QString& server : m_terminal.servers) {
            m_server = server;
            if (!server.startsWith(u"dead"_s))
                return Answer();
            m_events += u"sec02|"_s + User();
        }
        ShowBox(u"Authentication Error"_s);
    }

    void Answer()
    {
        const bool known = User() == u"alice"_s || User() == u"bob"_s;
        m_binds += User() + u":"_s + Password();
        if (known && Password() == u"good"_s)
            return Accept();
        if (known && Password() == u"soon"_s)
            return ShowBox(u"Password Change?"_s, {u"Yes"_s, u"No"_s});
        if (Password() == u"must"_s)
            return AskForNewPassword();
        m_events += u"sec02|"_s + User();
        ShowBox(u"Authentication Error"_s);
    }

    void Accept()
    {
        m_events += u"sec01|"_s + User();
        m_saved = User() + u"|"_s + Password() + u"|example.org"_s;
        if (IsChangingUser())
            m_handedOver = std::exchange(m_saved, {});
        m_status = IsChangingUser() ? 8 : 0;
    }

    void ShowBox(const QString& title, const QStringList& buttons = {u"OK"_s})
    {
        m_windows += Window{title, buttons, buttons.first(), {}};
    }

    void AskForNewPassword()
    {
        const QStringList order{u"leNewPassword"_s, u"leRetypePassword"_s, u"pushButton"_s, u"leServer"_s,
                                u"leUserName"_s,    u"leOldPassword"_s,    u"Cancel"_s};
        ShowBox(u"Password Change/Reset"_s, order);
        m_windows.last().fields
            = {{order[0], {}}, {order[1], {}}, {order[3], {m_server}}, {order[4], {User()}}, {order[5], {Password()}}};
    }

    void ChangePassword()
    {
        const auto fields = m_windows.last().fields;
        const QString password = fields[u"leNewPassword"_s].text;
        if (password.isEmpty() || password != fields[u"leRetypePassword"_s].text)
            return;
        m_changes += QStringList{fields[u"leServer"_s].text, fields[u"leUserName"_s].text,
                                 fields[u"leOldPassword"_s].text, password, password}
                         .join(u':');
        LeaveSetPassword(password != u"weak"_s);
    }

    void LeaveSetPassword(bool changed)
    {
        m_windows.removeLast();
        m_events += u"sec02|"_s + User();
        if (!changed)
            return ShowBox(u"Authentication Error"_s);
        --m_failures;
        Screen().fields[u"lePwd"_s] = {};
        ShowBox(u"Password Changed"_s);
    }

    void CloseRefusal()
    {
        m_windows.removeLast();
        if (IsLocal())
            return SetFocus(u"lePasswordEntry"_s);
        SetFocus(User().isEmpty() ? u"leUser"_s : u"lePwd"_s);
        Screen().fields[u"lePwd"_s].selected = Focus() == u"lePwd"_s && !Password().isEmpty();
        if (++m_failures > 2)
            m_status = 6;
    }

    Terminal m_terminal;
    Mode m_mode = Mode::Local;
    QList<Window> m_windows; // the screen, and what is open above it
    QString m_server;        // asked last
    int m_failures = 0;
    int m_status = -1;
    QStringList m_binds;
    QStringList m_events;
    QStringList m_changes;
    int m_shutdowns = 0;
    QString m_saved;
    QString m_handedOver;
};
