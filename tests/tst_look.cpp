// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// What the screens look like in every language: nothing cut, untranslated or faint, and all of it in reach of the keys.
// CMakeLists.txt runs it at several scales and with a larger font, which Qt takes only when a program starts.
#include "app/plainstyle.h"
#include "config/logincfg.h"
#include "ldap/ldaphandler.h"
#include "tav3/desktop.h"
#include "tav3/rdpcipher.h"
#include "tests/support/testsupport.h"
#include "ui/loginwindow.h"
#include "ui/ngremotelogin.h"
#include "ui/setpassword.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <QTranslator>
#include <QXmlStreamReader>
#include <cmath>

namespace {

const QByteArray Root = "namingContexts: DC=example,DC=org\n";
const QString BackgroundPicture = QStringLiteral("/tmp/config/files/login.jpg");
constexpr double MinContrast = 4.5; // WCAG 2.1, 1.4.3

template <typename Widget> Widget* Find(const QWidget& window, const char* name)
{
    return window.findChild<Widget*>(QLatin1String(name));
}

QString Name(const QWidget* widget)
{
    return QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ') + widget->objectName();
}

// All of the window that can be seen.
QWidgetList Seen(const QWidget& window)
{
    QWidgetList seen = window.findChildren<QWidget*>();
    seen.erase(std::remove_if(seen.begin(), seen.end(), [&](QWidget* w) { return !w->isVisibleTo(&window); }),
               seen.end());
    return seen;
}

bool Fits(const QWidget* widget)
{
    const auto* label = qobject_cast<const QLabel*>(widget);
    if (label && label->wordWrap())
        return label->heightForWidth(label->width()) <= label->height();
    const QSize needed = widget->property("text").toString().isEmpty() ? QSize() : widget->minimumSizeHint();
    return needed.boundedTo(widget->size()) == needed;
}

// The lock is a picture of the terminal's own.
bool IsEmpty(const QLabel* label)
{
    return label && label->text().isEmpty() && label->pixmap(Qt::ReturnByValue).isNull()
        && label->objectName() != QLatin1String("lIcon");
}

// Cut texts, and widgets that lie on others or reach out of their parent.
QStringList LayoutFaults(QWidget& window)
{
    QCoreApplication::sendPostedEvents();
    QStringList faults;
    const QWidgetList seen = Seen(window);
    for (const QWidget* widget : seen) {
        if (!Fits(widget))
            faults += Name(widget) + QStringLiteral(" cuts its text");
        if (IsEmpty(qobject_cast<const QLabel*>(widget)))
            faults += Name(widget) + QStringLiteral(" shows nothing");
        if (!widget->parentWidget()->rect().contains(widget->geometry()))
            faults += Name(widget) + QStringLiteral(" reaches out of its parent");
        for (const QWidget* other : seen) {
            if (other < widget && other->parent() == widget->parent()
                && other->geometry().intersects(widget->geometry()))
                faults += Name(widget) + QStringLiteral(" lies on ") + Name(other);
        }
    }
    return faults;
}

double Luminance(QRgb colour)
{
    const auto linear = [](int value) { // IEC 61966-2-1
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

double Contrast(QRgb one, QRgb other)
{
    const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

// Takes away all text that the window shows, and nothing else, while it lives.
class Blank {
public:
    explicit Blank(QWidget& window) : m_layouts(window.findChildren<QLayout*>())
    {
        for (QLayout* layout : m_layouts)
            layout->setEnabled(false);
        QWidgetList widgets = Seen(window);
        if (qobject_cast<QLabel*>(&window)) // a tooltip
            widgets += &window;
        for (QWidget* widget : widgets) {
            for (const char* name : {"text", "placeholderText"})
                Keep(widget, name);
        }
    }
    ~Blank()
    {
        for (const auto& [widget, name, text] : m_texts)
            Set(widget, name, text);
        for (QLayout* layout : m_layouts)
            layout->setEnabled(true);
    }

    QWidgetList Widgets() const
    {
        QWidgetList widgets;
        for (const auto& text : m_texts)
            widgets += std::get<QWidget*>(text);
        return widgets;
    }

private:
    void Keep(QWidget* widget, const char* name)
    {
        const QVariant text = widget->property(name);
        if (!text.isValid())
            return;
        m_texts.append({widget, name, text});
        Set(widget, name, QString());
    }
    static void Set(QWidget* widget, const char* name, const QVariant& text)
    {
        const QSignalBlocker quiet(widget);
        widget->setProperty(name, text);
    }

    QList<QLayout*> m_layouts;
    QVector<std::tuple<QWidget*, const char*, QVariant>> m_texts;
};

// The contrast of a text with what lies behind it, where it is weakest: in each piece as wide as a letter is high the
// strongest pixel counts, as the edges of letters are blurred. Without text that of black and white.
double TextContrast(const QImage& with, const QImage& without, const QRect& place, int piece)
{
    QVector<double> strongest(place.width() / piece + 1, 1);
    QVector<int> changed(strongest.size(), 0);
    for (int y = place.top(); y <= place.bottom(); ++y) {
        const auto* text = reinterpret_cast<const QRgb*>(with.constScanLine(y)) + place.left();
        const auto* behind = reinterpret_cast<const QRgb*>(without.constScanLine(y)) + place.left();
        for (int x = 0; x < place.width(); ++x) {
            if (text[x] == behind[x])
                continue;
            ++changed[x / piece];
            strongest[x / piece] = std::max(strongest[x / piece], Contrast(text[x], behind[x]));
        }
    }
    double weakest = 21;
    for (int i = 0; i < strongest.size(); ++i) {
        if (changed[i] > piece) // else a gap, or the edge of a letter
            weakest = std::min(weakest, strongest[i]);
    }
    return weakest;
}

QStringList FaintTexts(QWidget& window, const char* state)
{
    QCoreApplication::sendPostedEvents(); // what a change of state has still to do would count as text
    const QImage with = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const Blank blank(window);
    const QImage without = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const int scale = window.devicePixelRatio();
    QStringList faint;
    for (const QWidget* widget : blank.Widgets()) {
        const QRect place(widget->mapTo(&window, QPoint()) * scale, widget->size() * scale);
        const double contrast = TextContrast(with, without, place, widget->fontMetrics().ascent() * scale);
        if (contrast < MinContrast)
            faint += QStringLiteral("%1, %2: %3").arg(Name(widget), QLatin1String(state)).arg(contrast);
    }
    return faint;
}

// As it is, with the pointer on every button, and disabled.
QStringList FaintTextsInEveryState(QWidget& window)
{
    QStringList faint = FaintTexts(window, "normal");
    for (auto* button : window.findChildren<QPushButton*>())
        button->setAttribute(Qt::WA_UnderMouse);
    faint += FaintTexts(window, "hovered");
    QWidgetList disabled;
    for (auto* button : window.findChildren<QPushButton*>()) {
        button->setAttribute(Qt::WA_UnderMouse, false);
        if (button->isEnabled())
            disabled += button;
        button->setEnabled(false);
    }
    faint += FaintTexts(window, "disabled");
    for (QWidget* button : disabled)
        button->setEnabled(true);
    return faint;
}

// Looks at the next modal box as soon as it is there, and ends it; ends a dialog that comes instead.
class BoxVisit {
public:
    explicit BoxVisit(std::function<void(QMessageBox&)> visit) : m_visit(std::move(visit))
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this] { LookForBox(); });
        m_poll.start(5);
    }

private:
    void LookForBox()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            m_poll.stop();
            if (!QTest::qWaitForWindowActive(box))
                qFatal("the box does not become active");
            m_visit(*box);
            box->done(QMessageBox::No);
        } else if (modal) {
            modal->close();
        }
    }

    QTimer m_poll;
    std::function<void(QMessageBox&)> m_visit;
};

// The command line that QCoreApplication::arguments() gives.
char program[] = "gate";
char setup[] = "setup";
char* words[] = {program, setup, nullptr};
int wordCount = 1;

using Visit = std::function<void(QWidget&)>;

} // namespace

class Look : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        AbortOnConnectWarnings();
        QDir().mkpath(QStringLiteral("/tmp/.config"));
        QDir().mkpath(QStringLiteral("/tmp/config/files"));
        WriteFile(QStringLiteral("/tmp/.config/.loggedin"), {});
        m_cfg.serverType = QStringLiteral("LDAP");
        m_cfg.remoteServer = QStringLiteral("live");
        m_cfg.remoteDomain = QStringLiteral("example.org");
    }

    void cleanup()
    {
        QCoreApplication::removeTranslator(&m_translator);
        QFile::remove(BackgroundPicture);
    }

    void NothingIsUntranslated_data() { Languages(1); }
    void NothingIsCut_data() { Languages(0); }

    // Qt's own tool finds the texts of forms and sources; the sentences of the login chain stand in tables.
    void NothingIsUntranslated()
    {
        Speak();
        const QString found = m_folder.filePath(QStringLiteral("found.ts"));
        QCOMPARE(QProcess::execute(QStringLiteral("lupdate"),
                                   {QStringLiteral("-silent"), QStringLiteral("-tr-function-alias"),
                                    QStringLiteral("tr+=Translated"), QStringLiteral(PROJECT_DIR "/ui"),
                                    QStringLiteral(PROJECT_DIR "/config"), QStringLiteral("-ts"), found}),
                 0);
        QStringList missing;
        QXmlStreamReader texts(FileText(found));
        QString context;
        while (!texts.atEnd()) {
            texts.readNext();
            if (texts.isStartElement() && texts.name() == QLatin1String("name"))
                context = texts.readElementText();
            else if (texts.isStartElement() && texts.name() == QLatin1String("source"))
                NoteIfMissing(context, texts.readElementText(), missing);
        }
        for (const QString& sentence : LdapHandler::LdapErrorMessages)
            NoteIfMissing(QStringLiteral("LoginCfg"), sentence, missing);
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
    }

    void NothingIsCut()
    {
        Speak();
        Collect(LayoutFaults);
    }

    void NothingIsFaint() { Collect(FaintTextsInEveryState); }

    void NothingIsFaintOnDarkPicture()
    {
        QImage picture(400, 500, QImage::Format_RGB32);
        picture.fill(QColor(20, 24, 40));
        QVERIFY(picture.save(BackgroundPicture, "jpg"));
        Collect(FaintTextsInEveryState);
    }

    // The view buttons are meant for the pointer alone.
    void TabReachesAll_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("order"); // from the field that has the focus at the start
        QTest::newRow("login") << "login"
                               << "leUser lePwd login";
        QTest::newRow("unlock") << "unlock"
                                << "lePwd Unlock change logout leUser";
        QTest::newRow("change user") << "change"
                                     << "leUser lePwd login cancel";
    }

    void TabReachesAll()
    {
        QFETCH(QString, screen);
        QFETCH(QString, order);
        const auto dialog = RemoteDialog(screen, "fine");
        QStringList forth{dialog->focusWidget()->objectName()};
        QStringList back;
        for (int i = 0; i < order.count(QLatin1Char(' ')) + 1; ++i) {
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
            forth += dialog->focusWidget()->objectName();
        }
        QCOMPARE(forth.join(QLatin1Char(' ')), order + QLatin1Char(' ') + forth.first());
        for (int i = 0; i < forth.size(); ++i) {
            back.prepend(dialog->focusWidget()->objectName());
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Backtab);
        }
        QCOMPARE(back, forth);
    }

private:
    void Languages(int first)
    {
        QTest::addColumn<QString>("language");
        for (const char* language : {"en", "de", "fr", "es", "pt_BR", "ja", "zh_CN"}) {
            if (first-- <= 0)
                QTest::newRow(language) << QString::fromLatin1(language);
        }
    }

    void Speak()
    {
        QFETCH(QString, language);
        if (language != QLatin1String("en"))
            QVERIFY(m_translator.load(QStringLiteral(":/translations/qorm-login_") + language)
                    && QCoreApplication::installTranslator(&m_translator));
    }

    void NoteIfMissing(const QString& context, const QString& source, QStringList& missing)
    {
        if (m_translator.translate(context.toUtf8().constData(), source.toUtf8().constData()).isEmpty())
            missing += context + QStringLiteral(": ") + source;
    }

    void Collect(QStringList (*faultsOf)(QWidget&))
    {
        QStringList faults;
        ForEveryScreen([&](QWidget& window) {
            for (const QString& fault : faultsOf(window))
                faults += window.windowTitle() + QStringLiteral(": ") + fault;
        });
        faults.removeDuplicates();
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
    }

    void ForEveryScreen(const Visit& look)
    {
        for (const char* mode : {"login", "unlock", "change"})
            ForRemoteDialog(QString::fromLatin1(mode), look);
        Refuse(look);
        ForSetPassword(look);
        QToolTip::showText(QPoint(), QStringLiteral("Caps Lock"));
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("QTipLabel"))
                look(*window);
        }
        QToolTip::hideText();
        for (wordCount = 2; wordCount > 0; --wordCount) {
            LoginWindow window(&m_cfg);
            window.show();
            look(window);
        }
    }

    // Empty, filled in, with the question after a good login, and after it.
    void ForRemoteDialog(const QString& mode, const Visit& look)
    {
        m_tools.InstallDirectory(Root,
                                 "dn: CN=fine\npwdLastSet: " + DirectoryTime(-39)
                                     + "\nmsDS-UserPasswordExpiryTimeComputed: " + DirectoryTime(3) + "\n\n");
        const auto dialog = RemoteDialog(mode, "");
        look(*dialog);
        Find<QLineEdit>(*dialog, "leUser")->setText(QStringLiteral("fine"));
        Find<QLineEdit>(*dialog, "lePwd")->setText(QStringLiteral("secret"));
        Find<QLabel>(*dialog, "capslock")->show();
        const BoxVisit question([&](QMessageBox& box) {
            look(*dialog);
            look(box);
        });
        QMetaObject::invokeMethod(dialog.get(), "on_login_clicked");
        look(*dialog);
    }

    std::unique_ptr<ngremotelogin> RemoteDialog(const QString& mode, const char* user)
    {
        const QString savedUser = QStringLiteral("/tmp/.user.1");
        QFile::remove(savedUser);
        m_cfg.loggedIn = false;
        if (mode != QLatin1String("login"))
            WriteFile(savedUser, QByteArray(rdp_encrypt(user)) + ",00,,00,\n");
        auto dialog = std::make_unique<ngremotelogin>(&m_cfg);
        dialog->show();
        std::ignore = QTest::qWaitForWindowActive(dialog.get());
        if (mode == QLatin1String("change"))
            Find<QPushButton>(*dialog, "change")->click();
        return dialog;
    }

    // With the longest sentence.
    void Refuse(const Visit& look)
    {
        m_tools.InstallDirectory(Root, "ldap_bind: Invalid credentials (49)\n\tadditional info: x, data 1001, v1\n");
        const auto dialog = RemoteDialog(QStringLiteral("login"), "");
        const BoxVisit complaint(look);
        QMetaObject::invokeMethod(dialog.get(), "on_login_clicked");
    }

    void ForSetPassword(const Visit& look)
    {
        SetPassword dialog;
        TavDesktop::SetDefaultStyleSheet(&dialog);
        dialog.SetServer(QStringLiteral("dc1.example.org"));
        dialog.SetUserName(QStringLiteral("fine"));
        dialog.show();
        look(dialog);
        for (const char* field : {"leOldPassword", "leNewPassword", "leRetypePassword"})
            QTest::keyClicks(Find<QLineEdit>(dialog, field), QLatin1String(field));
        look(dialog);
        Find<QPushButton>(dialog, "pushButton")->click();
        look(dialog);
    }

    FakeTools m_tools;
    LoginCfg m_cfg = LoginCfg(true);
    QTranslator m_translator;
    QTemporaryDir m_folder;
};

int main(int argc, char** argv)
{
    QApplication::setStyle(new PlainStyle);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(wordCount, words);
    Look look;
    return QTest::qExec(&look, argc, argv);
}

#include "tst_look.moc"
