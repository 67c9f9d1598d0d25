// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/DefaultFileAssociationManager.h"
#include "tests/app/ApplicationFixture.h"
#include "tests/doubles/CapturedOutput.h"

namespace tallowmere {

namespace {

using namespace tallowmere::test;

constexpr const char *kIdentity = "app.tallowmere.Tallowmere";
const QList<QByteArray> kAllTypes{"public.jpeg", "public.png",  "org.webmproject.webp",
                                  "public.avif", "public.heic", "public.heif"};

constexpr const char *kFirstLine = "🔧 Attempting to set default file associations on first launch...\n";
constexpr const char *kInstructions = "\n"
                                      "ℹ️  To manually set Tallowmere as default:\n"
                                      "   1. Right-click any JPG/PNG/WebP file in Finder\n"
                                      "   2. Select 'Get Info'\n"
                                      "   3. Expand 'Open with:' section\n"
                                      "   4. Select 'Tallowmere' from the dropdown\n"
                                      "   5. Click 'Change All...' button\n"
                                      "\n";

QByteArray verification(const char *jpeg, const char *png, const char *webp)
{
    return QByteArray("📋 Verification after setting associations:\n   JPEG: ") + jpeg + "\n   PNG: " + png +
           "\n   WebP: " + webp + "\n";
}

const BundleInformation &namedBundle()
{
    static const BundleInformation bundle(R"({"CFBundleIdentifier": "org.example.Viewer"})");
    return bundle;
}

const BundleInformation &namelessBundle()
{
    static const BundleInformation bundle("{}");
    return bundle;
}

class DefaultFileAssociations : public testing::Test
{
protected:
    [[nodiscard]] QByteArray outputOfLaunch()
    {
        DefaultFileAssociationManager manager(settings, registry, namelessBundle);
        const CapturedOutput output;
        manager.setDefaultsOnFirstLaunch();
        return output.text();
    }
    [[nodiscard]] QByteArray outputOfRegistering(const QList<QByteArray> &types, bool expected)
    {
        DefaultFileAssociationManager manager(settings, registry, namelessBundle, types);
        const CapturedOutput output;
        EXPECT_EQ(manager.setAsDefaultViewer(), expected);
        return output.text();
    }

    SettingsManager settings{std::make_unique<MemoryDefaultsStore>()};
    RecordingHandlerRegistry registry;
};

class FirstLaunchOfApplication : public ApplicationFixture
{};

} // namespace

TEST_F(DefaultFileAssociations, aFirstLaunchRegistersAllSixTypesInOneRequestAndSaysSo)
{
    EXPECT_EQ(outputOfLaunch(), kFirstLine +
                                    QByteArray("✅ Successfully set default handler for public.jpeg\n"
                                               "✅ Successfully set default handler for public.png\n"
                                               "✅ Successfully set default handler for org.webmproject.webp\n"
                                               "✅ Successfully set default handler for public.avif\n"
                                               "✅ Successfully set default handler for public.heic\n"
                                               "✅ Successfully set default handler for public.heif\n"
                                               "✅ All file associations set successfully (6/6)\n") +
                                    verification("✅", "✅", "✅"));
    ASSERT_EQ(registry.requests.size(), 1);
    EXPECT_EQ(registry.requests.first().contentTypes, kAllTypes);
    EXPECT_EQ(registry.requests.first().handler, kIdentity);
    EXPECT_EQ(registry.asked, (QList<QByteArray>{"public.jpeg", "public.png", "org.webmproject.webp"}));
    EXPECT_TRUE(settings.defaultFileAssociationsSet());
}

TEST_F(DefaultFileAssociations, secondLaunchPrintsNothingAndDoesNotCallTheRegistry)
{
    EXPECT_NE(outputOfLaunch(), "");
    registry.requests.clear();
    registry.asked.clear();
    EXPECT_EQ(outputOfLaunch(), "");
    EXPECT_TRUE(registry.requests.isEmpty());
    EXPECT_TRUE(registry.asked.isEmpty());
}

TEST_F(DefaultFileAssociations, refusedWithApplicationNotFoundPrintsSixFailuresAndTheInstructionsAndStillSetsTheFlag)
{
    QByteArray expected = kFirstLine;
    for (const QByteArray &type : kAllTypes) {
        registry.statuses.insert(type, -10814);
        expected += "❌ Failed to set default handler for " + type + "\n   Error code: -10814 - Application not found\n";
    }
    expected +=
        "⚠️ Some file associations failed to set (0/6 succeeded)\n" + verification("❌", "❌", "❌") + kInstructions;
    EXPECT_EQ(outputOfLaunch(), expected);
    EXPECT_TRUE(settings.defaultFileAssociationsSet());
    EXPECT_EQ(outputOfLaunch(), "");
}

TEST_F(DefaultFileAssociations, anotherHandlerForWebPFailsTheVerificationAlthoughRegistrationSucceeded)
{
    registry.others.insert("org.webmproject.webp", "org.gnome.Loupe");
    const QByteArray output = outputOfLaunch();
    EXPECT_TRUE(output.contains("✅ Successfully set default handler for org.webmproject.webp\n"));
    EXPECT_TRUE(output.endsWith("(6/6)\n" + verification("✅", "✅", "❌"))) << output.constData();
}

TEST_F(DefaultFileAssociations, theVerificationComparesTheIdentityCaseSensitively)
{
    registry.others.insert("public.png", "app.tallowmere.tallowmere");
    EXPECT_TRUE(outputOfLaunch().endsWith(verification("✅", "❌", "✅")));
}

TEST_F(DefaultFileAssociations, oneFailureDoesNotStopTheOthers)
{
    registry.statuses = {{"public.png", -50}, {"public.heif", -10817}};
    const QByteArray output = outputOfLaunch();
    EXPECT_EQ(output, kFirstLine +
                          QByteArray("✅ Successfully set default handler for public.jpeg\n"
                                     "❌ Failed to set default handler for public.png\n"
                                     "   Error code: -50 - Invalid parameter\n"
                                     "✅ Successfully set default handler for org.webmproject.webp\n"
                                     "✅ Successfully set default handler for public.avif\n"
                                     "✅ Successfully set default handler for public.heic\n"
                                     "❌ Failed to set default handler for public.heif\n"
                                     "   Error code: -10817 - Unknown error\n"
                                     "⚠️ Some file associations failed to set (4/6 succeeded)\n") +
                          verification("✅", "❌", "✅") + kInstructions);
}

TEST_F(DefaultFileAssociations, theFlagIsWrittenBeforeTheVerification)
{
    bool setWhileRegistering = true;
    registry.onRequest = [&] { setWhileRegistering = settings.defaultFileAssociationsSet(); };
    EXPECT_NE(outputOfLaunch(), "");
    EXPECT_FALSE(setWhileRegistering);
    EXPECT_TRUE(settings.defaultFileAssociationsSet());
}

TEST_F(DefaultFileAssociations, status10817IsDescribedAsUnknownError)
{
    EXPECT_EQ(descriptionOf(-10817), "Unknown error");
}

TEST_F(DefaultFileAssociations, status10813IsDescribedByItsCode)
{
    EXPECT_EQ(descriptionOf(-10813), "Error code: -10813");
    registry.statuses = {{"public.png", -10813}};
    EXPECT_EQ(outputOfRegistering({"public.png"}, false),
              "❌ Failed to set default handler for public.png\n"
              "   Error code: -10813 - Error code: -10813\n"
              "⚠️ Some file associations failed to set (0/1 succeeded)\n");
}

TEST_F(DefaultFileAssociations, theOtherStatusesHaveTheirTexts)
{
    EXPECT_EQ(descriptionOf(0), "Success");
    EXPECT_EQ(descriptionOf(-10814), "Application not found");
    EXPECT_EQ(descriptionOf(-50), "Invalid parameter");
    EXPECT_EQ(descriptionOf(-10822), "Error code: -10822");
    EXPECT_EQ(descriptionOf(7), "Error code: 7");
}

TEST_F(DefaultFileAssociations, withoutTypesNothingIsAskedOfTheRegistry)
{
    EXPECT_EQ(outputOfRegistering({}, true), "✅ All file associations set successfully (0/0)\n");
    EXPECT_TRUE(registry.requests.isEmpty());
}

TEST_F(DefaultFileAssociations, theIdentityIsTheBundlesOwn)
{
    DefaultFileAssociationManager manager(settings, registry, namedBundle);
    const CapturedOutput output;
    manager.setDefaultsOnFirstLaunch();
    ASSERT_EQ(registry.requests.size(), 1);
    EXPECT_EQ(registry.requests.first().handler, "org.example.Viewer");
    EXPECT_TRUE(output.text().endsWith(verification("✅", "✅", "✅")));
}

TEST_F(FirstLaunchOfApplication, registersBeforeTheMainWindowExists)
{
    settings.setDefaultFileAssociationsSet(false);
    bool windowExisted = true;
    registry.onRequest = [&] { windowExisted = window() != nullptr; };
    const CapturedOutput output;
    launch();
    ASSERT_EQ(registry.requests.size(), 1);
    EXPECT_EQ(registry.requests.first().handler, kIdentity);
    EXPECT_FALSE(windowExisted);
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(FirstLaunchOfApplication, aLaterLaunchOrReopeningDoesNotAskAgain)
{
    const CapturedOutput output;
    launch();
    delegate->applicationShouldHandleReopen(false);
    settle();
    EXPECT_TRUE(registry.requests.isEmpty());
    EXPECT_EQ(output.text(), "");
}

} // namespace tallowmere
