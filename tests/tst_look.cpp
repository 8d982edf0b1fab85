// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// What the screens look like in every language: nothing cut, untranslated or faint, and all of it in reach of the keys.
// CMakeLists.txt runs it at several scales and with a larger font, which Qt takes only when a program starts.
#include "app/plainstyle.h"
#include "config/logincfg.h"
#include "ldap/ldaphandler.h"
#include "tav3/desktop.h"
#include "tav3/rdpcipher.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "ui/loginwindow.h"
#include "ui/ngremotelogin.h"
#include "ui/setpassword.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <QTranslator>
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

// The contrast of the picture's most frequent colour, its ground, with the colour that stands out most. The strongest
// pixel counts, as the edges of letters are blurred.
double TextContrast(const QImage& picture)
{
    QHash<QRgb, int> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++colours[picture.pixel(x, y)];
    }
    const QList<QRgb> all = colours.keys();
    const QRgb ground = *std::max_element(
        all.begin(), all.end(), [&](QRgb one, QRgb other) { return colours.value(one) < colours.value(other); });
    double strongest = 1;
    for (const QRgb colour : all)
        strongest = std::max(strongest, Contrast(colour, ground));
    return strongest;
}

QStringList FaintTexts(QWidget& window, const char* state)
{
    QCoreApplication::sendPostedEvents();
    const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const qreal scale = window.devicePixelRatioF();
    constexpr int Border = 3; // pixels
    QStringList faint;
    QWidgetList widgets = Seen(window);
    if (qobject_cast<QLabel*>(&window)) // a tooltip
        widgets += &window;
    for (const QWidget* widget : widgets) {
        const QRect inside = widget->rect().adjusted(Border, Border, -Border, -Border);
        const QRect place(widget->mapTo(&window, inside.topLeft()) * scale, inside.size() * scale);
        if (widget->property("text").toString().isEmpty() && widget->property("placeholderText").toString().isEmpty())
            continue;
        const double contrast = TextContrast(picture.copy(place));
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

    // Qt's own tool finds the texts of forms and sources; the sentences of the login chain stand in a table.
    void NothingIsUntranslated()
    {
        QFETCH(QString, language);
        Speak();
        const QString texts = m_folder.filePath(language + QStringLiteral(".ts"));
        QVERIFY(QFile::copy(QStringLiteral(PROJECT_DIR "/translations/qorm-login_%1.ts").arg(language), texts));
        QCOMPARE(QProcess::execute(QStringLiteral("lupdate"),
                                   {QStringLiteral("-silent"), QStringLiteral("-tr-function-alias"),
                                    QStringLiteral("tr+=Translated"), QStringLiteral(PROJECT_DIR "/ui"),
                                    QStringLiteral(PROJECT_DIR "/config"), QStringLiteral("-ts"), texts}),
                 0);
        QVERIFY2(!FileText(texts).contains("unfinished"), FileText(texts).constData());
        for (const QString& sentence : LdapHandler::LdapErrorMessages)
            QVERIFY2(!m_translator.translate("LoginCfg", sentence.toUtf8().constData()).isEmpty(),
                     qPrintable(sentence));
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
    void TabReachesAll_data() { LoadTable("look.tsv"); }

    void TabReachesAll()
    {
        const QString order = Text("order"); // from the field that has the focus at the start
        const auto dialog = RemoteDialog(Text("screen"), "fine");
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
