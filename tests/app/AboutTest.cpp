// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AboutText.h"
#include "app/AboutViewController.h"
#include "app/ContentWindow.h"
#include "viewer/Appearance.h"

#include <QAction>
#include <QApplication>
#include <QDate>
#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace tallowmere {

namespace {

using namespace Qt::Literals::StringLiterals;

AboutText textOf(const QByteArray &json)
{
    return AboutText::of(BundleInformation(json), 2031);
}

/// The About window's content over a bundle of the test's own.
class About : public ::testing::Test
{
protected:
    void show(const QByteArray &json)
    {
        controller = new AboutViewController(BundleInformation(json));
        window = std::make_unique<ContentWindow>(u"About"_s, controller, QSize(400, 240));
        window->makeKeyAndOrderFront();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), 30'000));
    }
    QString text(const QString &label) const { return controller->findChild<QLabel *>(label)->text(); }
    QWidget *part(const QString &name) const { return controller->findChild<QWidget *>(name); }
    QRect placeOf(const QString &name) const { return part(name)->geometry(); }

    AboutViewController *controller = nullptr;
    std::unique_ptr<ContentWindow> window;
};

class AddressBook final : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl &url) { opened << url; }

public:
    QList<QUrl> opened;
};

} // namespace

TEST(AboutText, saysWhatTheBundleSays)
{
    const AboutText text = textOf(R"({"CFBundleName": "Fell", "CFBundleShortVersionString": "2.5",
                                      "CFBundleVersion": "77", "NSHumanReadableCopyright": "Ours"})");
    EXPECT_EQ(text.name, u"Fell"_s);
    EXPECT_EQ(text.version, u"Version 2.5 (77)"_s);
    EXPECT_EQ(text.rights, u"Ours"_s);
}

TEST(AboutText, aBundleWithoutAVersionIsVersion1Point0Build1)
{
    EXPECT_EQ(textOf("{}").version, u"Version 1.0 (1)"_s);
    EXPECT_EQ(textOf(R"({"CFBundleVersion": "9"})").version, u"Version 1.0 (9)"_s);
    EXPECT_EQ(textOf(R"({"CFBundleShortVersionString": "3.1"})").version, u"Version 3.1 (1)"_s);
}

TEST(AboutText, entriesThatAreNoTextCountAsMissing)
{
    const AboutText text = textOf(R"({"CFBundleName": 4, "CFBundleShortVersionString": 2.5, "CFBundleVersion": true,
                                      "NSHumanReadableCopyright": ["x"]})");
    EXPECT_EQ(text.name, u"Tallowmere"_s);
    EXPECT_EQ(text.version, u"Version 1.0 (1)"_s);
    EXPECT_EQ(text.rights, u"Copyright © 2031 Tallowmere. All rights reserved."_s);
}

TEST(AboutText, anEmptyRightsNoticeIsTreatedAsMissing)
{
    EXPECT_EQ(textOf(R"({"NSHumanReadableCopyright": ""})").rights,
              u"Copyright © 2031 Tallowmere. All rights reserved."_s);
}

TEST(AboutText, anEmptyNameIsStillAName)
{
    EXPECT_EQ(textOf(R"({"CFBundleName": ""})").name, QString());
}

TEST(AboutText, aBundleThatCantBeReadHasAllTheFallbacks)
{
    for (const char *broken : {"", "[]", "{\"CFBundleName\": \"Fe"}) {
        EXPECT_EQ(textOf(broken).name, u"Tallowmere"_s) << broken;
        EXPECT_EQ(textOf(broken).version, u"Version 1.0 (1)"_s) << broken;
    }
}

TEST(AboutText, theProgramsOwnBundleIsComplete)
{
    const BundleInformation &own = BundleInformation::main();
    EXPECT_EQ(own.string(u"CFBundleIdentifier"_s), u"app.tallowmere.Tallowmere"_s);
    EXPECT_EQ(own.string(u"CFBundleName"_s), u"Tallowmere"_s);
    EXPECT_EQ(own.string(u"CFBundleShortVersionString"_s), QLatin1String(TALLOWMERE_VERSION));
    EXPECT_TRUE(own.string(u"CFBundleVersion"_s).has_value());
    EXPECT_FALSE(own.string(u"NSHumanReadableCopyright"_s).value_or(QString()).isEmpty());
}

TEST_F(About, theNoticeOfThisYearIsShownWithoutOneInTheBundle)
{
    show("{}");
    EXPECT_EQ(text(u"copyrightLabel"_s),
              u"Copyright © %1 Tallowmere. All rights reserved."_s.arg(QDate::currentDate().year()));
    EXPECT_EQ(text(u"versionLabel"_s), u"Version 1.0 (1)"_s);
}

TEST_F(About, itsPartsStandOneBelowTheOtherInTheMiddle)
{
    show("{}");
    EXPECT_EQ(window->size(), QSize(400, 240));
    const QRect icon = placeOf(u"appIconImageView"_s);
    EXPECT_EQ(icon, QRect(168, 30, 64, 64));
    const QRect name = placeOf(u"appNameLabel"_s);
    const QRect version = placeOf(u"versionLabel"_s);
    const QRect rights = placeOf(u"copyrightLabel"_s);
    const QRect button = placeOf(u"oltraButton"_s);
    EXPECT_EQ(name.top(), icon.bottom() + 1 + 12);
    EXPECT_EQ(version.top(), name.bottom() + 1 + 4);
    EXPECT_EQ(rights.top(), version.bottom() + 1 + 8);
    EXPECT_EQ(button.top(), rights.bottom() + 1 + 12);
    EXPECT_LE(button.bottom() + 1, 240 - 20);
    for (const QRect &label : {name, version, rights}) {
        EXPECT_GE(label.left(), 20);
        EXPECT_LE(label.right() + 1, 380);
        EXPECT_NEAR(label.center().x(), 200, 1);
    }
    EXPECT_NEAR(button.center().x(), 200, 1);
}

TEST_F(About, aLongRightsNoticeWrapsAndMakesTheWindowTaller)
{
    const QByteArray notice = QByteArray("All rights are reserved by whoever holds them. ").repeated(30);
    show("{\"NSHumanReadableCopyright\": \"" + notice + "\"}");
    EXPECT_EQ(window->width(), 400);
    EXPECT_GT(window->height(), 240);
    const auto *label = controller->findChild<QLabel *>(u"copyrightLabel"_s);
    EXPECT_GE(label->height(), label->heightForWidth(label->width())) << "nothing is cut off";
    EXPECT_LE(placeOf(u"oltraButton"_s).bottom() + 1, window->height() - 20);
}

TEST_F(About, textIsNeverMarkup)
{
    show(R"({"CFBundleName": "<b>x</b>"})");
    EXPECT_EQ(controller->findChild<QLabel *>(u"appNameLabel"_s)->textFormat(), Qt::PlainText);
}

TEST_F(About, escapeClosesIt)
{
    show("{}");
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(About, controlWClosesItAlsoWithTheButtonFocused)
{
    show("{}");
    part(u"oltraButton"_s)->setFocus();
    QTest::keyClick(window->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(About, otherKeysAreLeftToTheWindow)
{
    show("{}");
    for (const auto &[key, modifiers] : {std::pair{Qt::Key_W, Qt::KeyboardModifiers(Qt::NoModifier)},
                                         std::pair{Qt::Key_Q, Qt::KeyboardModifiers(Qt::ControlModifier)},
                                         std::pair{Qt::Key_A, Qt::KeyboardModifiers(Qt::NoModifier)}}) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        controller->keyDown(&press);
        EXPECT_FALSE(press.isAccepted()) << key;
        EXPECT_TRUE(window->isVisible()) << key;
    }
}

TEST_F(About, keysGoToTheControllerWhenItAppears)
{
    show("{}");
    EXPECT_EQ(QApplication::focusWidget(), controller);
}

TEST_F(About, theButtonOpensTheMakersAddress)
{
    AddressBook book;
    QDesktopServices::setUrlHandler(u"maker"_s, &book, "open");
    show(R"({"OltraWebsite": "maker://site"})");
    QTest::mouseClick(part(u"oltraButton"_s), Qt::LeftButton);
    EXPECT_EQ(book.opened, QList<QUrl>{QUrl(u"maker://site"_s)});
    QDesktopServices::unsetUrlHandler(u"maker"_s);
}

TEST_F(About, theButtonDoesNothingWithoutAnAddress)
{
    AddressBook book;
    QDesktopServices::setUrlHandler(QString(), &book, "open");
    show(R"({"OltraWebsite": ""})");
    QTest::mouseClick(part(u"oltraButton"_s), Qt::LeftButton);
    EXPECT_TRUE(book.opened.isEmpty());
    EXPECT_TRUE(window->isVisible());
    QDesktopServices::unsetUrlHandler(QString());
}

TEST_F(About, secondaryTextFollowsThePalette)
{
    show("{}");
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(20, 20, 20));
    dark.setColor(QPalette::WindowText, QColor(240, 240, 240));
    window->setPalette(dark);
    EXPECT_EQ(part(u"versionLabel"_s)->palette().color(QPalette::WindowText), secondaryLabelColor(dark));
    EXPECT_EQ(part(u"appNameLabel"_s)->palette().color(QPalette::WindowText), QColor(240, 240, 240));
}

} // namespace tallowmere

#include "AboutTest.moc"
