// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// What the screens look like in every language: nothing cut, untranslated or faint.
// CMakeLists.txt runs it at several scales and with a larger font, which Qt takes only when a program starts.
#include "app/plainstyle.h"
#include "ldap/ldaphandler.h"
#include "tav3/desktop.h"
#include "tests/support/screens.h"
#include "ui/loginwindow.h"
#include "ui/ngremotelogin.h"
#include "ui/setpassword.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <QTranslator>
#include <cmath>

namespace {

const QString BackgroundPicture = QStringLiteral("/tmp/config/files/login.jpg");
const QColor PictureColour(32, 32, 32); // a grey, which survives JPEG
constexpr double MinContrast = 4.5;     // WCAG 2.1, 1.4.3

// All of the window that can be seen; the window itself when that is a label, a tooltip.
QWidgetList Seen(QWidget& window)
{
    QCoreApplication::sendPostedEvents(); // or it is not laid out
    QWidgetList seen = window.findChildren<QWidget*>();
    seen.erase(std::remove_if(seen.begin(), seen.end(), [&](QWidget* w) { return !w->isVisibleTo(&window); }),
               seen.end());
    return seen.isEmpty() ? QWidgetList{&window} : seen;
}

// Whether it shows all of its text; a label without one, a picture. The lock is a picture of the terminal's own.
bool IsWhole(const QWidget* widget)
{
    const auto* label = qobject_cast<const QLabel*>(widget);
    if (label && label->text().isEmpty())
        return !label->pixmap(Qt::ReturnByValue).isNull() || label->objectName() == QLatin1String("lIcon");
    if (label && label->wordWrap())
        return label->heightForWidth(label->width()) <= label->height();
    const QSize needed = widget->property("text").toString().isEmpty() ? QSize() : widget->minimumSizeHint();
    return needed.boundedTo(widget->size()) == needed;
}

bool LiesOn(const QWidget* widget, const QWidget* other)
{
    return other != widget && other->parent() == widget->parent() && other->geometry().intersects(widget->geometry());
}

void CheckLayout(QWidget& window)
{
    const QWidgetList seen = Seen(window);
    for (const QWidget* widget : seen) {
        const QByteArray name = (window.windowTitle() + QLatin1Char(' ') + widget->objectName()).toUtf8();
        QVERIFY2(IsWhole(widget), name.constData());
        QVERIFY2(widget->isWindow() || widget->parentWidget()->rect().contains(widget->geometry()), name.constData());
        for (const QWidget* other : seen)
            QVERIFY2(!LiesOn(widget, other), name.constData());
    }
}

double Luminance(QRgb colour)
{
    const auto linear = [](int value) { // IEC 61966-2-1
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

// Of the darkest and the lightest colour: of a letter the strongest pixels count, as its edges are blurred.
double Contrast(const QImage& picture)
{
    const auto* pixels = reinterpret_cast<const QRgb*>(picture.constBits());
    double dark = 1;
    double light = 0;
    for (const QRgb colour : QSet<QRgb>(pixels, pixels + picture.width() * picture.height())) {
        dark = std::min(dark, Luminance(colour));
        light = std::max(light, Luminance(colour));
    }
    return (light + 0.05) / (dark + 0.05);
}

void CheckContrast(QWidget& window)
{
    const QWidgetList seen = Seen(window);
    const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const qreal scale = window.devicePixelRatioF();
    for (const QWidget* widget : seen) {
        if ((widget->property("text").toString() + widget->property("placeholderText").toString()).isEmpty())
            continue;
        const QRect inside = widget->rect().adjusted(3, 3, -3, -3); // of the border
        const QRect place(widget->mapTo(&window, inside.topLeft()) * scale, inside.size() * scale);
        const double contrast = Contrast(picture.copy(place));
        QVERIFY2(contrast >= MinContrast, qPrintable(widget->objectName() + QString::number(contrast)));
    }
}

// With the pointer on every button, with all of them disabled, and as usual.
void CheckContrastInEveryState(QWidget& window)
{
    for (const auto& [hovered, enabled] : {std::pair(true, true), std::pair(false, false), std::pair(false, true)}) {
        for (auto* button : window.findChildren<QPushButton*>()) {
            button->setAttribute(Qt::WA_UnderMouse, hovered);
            button->setEnabled(enabled);
        }
        CheckContrast(window);
    }
}

void UsePicture()
{
    QImage picture(400, 500, QImage::Format_RGB32);
    picture.fill(PictureColour);
    QDir().mkpath(QFileInfo(BackgroundPicture).path());
    QVERIFY(picture.save(BackgroundPicture));
}

} // namespace

class Look : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        AbortOnConnectWarnings();
        m_cfg.serverType = QStringLiteral("LDAP");
        m_cfg.remoteServer = QStringLiteral("live");
        m_cfg.remoteDomain = QStringLiteral("example.org");
    }

    void cleanup() { QFile::remove(BackgroundPicture); }

    // Qt's own tool finds the texts of forms and sources.
    void NothingIsUntranslated()
    {
        const QTemporaryDir folder;
        QVERIFY(ShellIn(folder.path(),
                        QStringLiteral("project=" PROJECT_DIR "; cp $project/translations/*.ts . && "
                                       "lupdate -silent -tr-function-alias tr+=Translated $project/ui $project/config "
                                       "-ts *.ts && ! grep -B 3 unfinished *.ts")));
    }

    void NothingIsCut_data()
    {
        QTest::addColumn<QString>("language");
        for (const char* language : {"en", "de", "fr", "es", "pt_BR", "ja", "zh_CN"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }

    // The sentences of the login chain, which stand in a table, are there too.
    void NothingIsCut()
    {
        QFETCH(QString, language);
        QTranslator translator;
        if (language != QLatin1String("en")) {
            QVERIFY(translator.load(QStringLiteral(":/translations/qorm-login_") + language));
            QCoreApplication::installTranslator(&translator);
            for (const QString& sentence : LdapHandler::LdapErrorMessages)
                QVERIFY2(!translator.translate("LoginCfg", qPrintable(sentence)).isEmpty(), qPrintable(sentence));
        }
        ForEveryScreen(CheckLayout);
    }

    void NothingIsFaint() { ForEveryScreen(CheckContrastInEveryState); }

    void NothingIsFaintOnDarkPicture()
    {
        UsePicture();
        ForEveryScreen(CheckContrastInEveryState);
    }

    // A style sheet that reads right can still have been ignored.
    void StyleIsPainted()
    {
        UsePicture();
        LogIn(m_cfg, "");
        ngremotelogin dialog(&m_cfg);
        dialog.show();
        const QImage pixels = dialog.grab().toImage();
        const auto* field = Find<QLineEdit>(dialog, "lePwd"); // without the focus, which has a border of its own
        const QPoint edge = field->mapTo(&dialog, QPoint(0, field->height() / 2)) * pixels.devicePixelRatio();
        QCOMPARE(pixels.pixelColor(edge).name(), QStringLiteral("#505050"));
        QCOMPARE(pixels.pixelColor(2, 2).name(), PictureColour.name());
        QVERIFY(!Find<QLabel>(dialog, "userimage")->isVisible());
    }

private:
    using Visit = std::function<void(QWidget&)>;

    void ForEveryScreen(const Visit& look)
    {
        m_tools.InstallExpiringDirectory();
        ForRemoteDialog("", {}, look);
        ForRemoteDialog("fine", {}, look);
        ForRemoteDialog("fine", "on_change_clicked", look);
        m_tools.InstallDirectory("namingContexts: DC=d\n", // and the longest sentence
                                 "ldap_bind: Invalid credentials (49)\n\tadditional info: x, data 1001, v1\n");
        ForRemoteDialog("", {}, look);
        ForSetPassword(look);
        QToolTip::showText(QPoint(), QStringLiteral("Caps Lock"));
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("QTipLabel"))
                look(*window);
        }
        QToolTip::hideText();
        for (const char* commandLine : {"gate", "gate setup"}) {
            SetCommandLine(commandLine);
            LoginWindow window(&m_cfg);
            window.show();
            look(window);
        }
    }

    // Empty, filled in, with the box after the check, and after that.
    void ForRemoteDialog(const char* session, const char* mode, const Visit& look)
    {
        LogIn(m_cfg, session);
        ngremotelogin dialog(&m_cfg);
        dialog.show();
        if (mode)
            QMetaObject::invokeMethod(&dialog, mode);
        look(dialog);
        Find<QLineEdit>(dialog, "leUser")->setText(QStringLiteral("fine"));
        Find<QLineEdit>(dialog, "lePwd")->setText(QStringLiteral("secret"));
        Find<QLabel>(dialog, "capslock")->show();
        OnBox(dialog, [&](QMessageBox& box) {
            look(dialog);
            look(box);
        });
        QMetaObject::invokeMethod(&dialog, "on_login_clicked");
        look(dialog);
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
};

int main(int argc, char** argv)
{
    QApplication::setStyle(new PlainStyle);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    SetCommandLine("gate");
    const QApplication application(wordCount, words);
    Look look;
    return QTest::qExec(&look, argc, argv);
}

#include "tst_look.moc"
