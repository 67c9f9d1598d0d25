// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/CopiesAhead.h"

#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"
#include "tests/imaging/Pipeline.h"
#include "viewer/DisplayPreparation.h"

namespace tallowmere {
namespace {

class CopiesAheadTest : public test::SteppedPipeline
{
protected:
    CopiesAheadTest()
    {
        m_settings.setAutoResizeToImageSize(false);
        m_preparation->setTarget({{10, 10}, 1.0, std::nullopt, {}});
    }
    static ImagePtr imageOf(std::uint32_t side)
    {
        DecodedImage decoded;
        decoded.pixels = PixelBuffer::allocate({side, side});
        return std::make_shared<const Image>(std::move(decoded));
    }

    SettingsManager m_settings{std::make_unique<test::MemoryDefaultsStore>()};
    std::shared_ptr<DisplayPreparation> m_preparation = std::make_shared<DisplayPreparation>(m_settings);
    std::unique_ptr<CopiesAhead> m_copies = std::make_unique<CopiesAhead>(m_preparation, m_loader, m_launcher);
    const std::vector<ImagePtr> m_images{imageOf(40), imageOf(40), imageOf(40)};
};

TEST_F(CopiesAheadTest, areMadeInTheBackground)
{
    m_copies->want({m_images[0], m_images[1]});
    EXPECT_FALSE(m_preparation->isPrepared(m_images[0]));
    m_launcher.runAll();
    EXPECT_TRUE(m_preparation->isPrepared(m_images[0]));
    EXPECT_TRUE(m_preparation->isPrepared(m_images[1]));
}

TEST_F(CopiesAheadTest, ofANewWishReplaceThoseNotBegun)
{
    m_copies->want({m_images[0], m_images[1]});
    m_copies->want({m_images[2]});
    EXPECT_EQ(m_launcher.launched().size(), 1U) << "one thread does it all";
    m_launcher.runAll();
    EXPECT_FALSE(m_preparation->isPrepared(m_images[0]));
    EXPECT_FALSE(m_preparation->isPrepared(m_images[1]));
    EXPECT_TRUE(m_preparation->isPrepared(m_images[2]));
    m_copies->want({m_images[1]});
    m_launcher.runAll();
    EXPECT_TRUE(m_preparation->isPrepared(m_images[1]));
}

TEST_F(CopiesAheadTest, areNotMadeWhenNobodyWantsThemAnyMore)
{
    m_copies->want({m_images[0]});
    m_copies->want({});
    m_launcher.runAll();
    EXPECT_FALSE(m_preparation->isPrepared(m_images[0]));
    m_copies->want({m_images[1]});
    m_copies.reset();
    m_launcher.runAll();
    EXPECT_FALSE(m_preparation->isPrepared(m_images[1]));
}

TEST_F(CopiesAheadTest, ofNothingStartNoThread)
{
    m_copies->want({});
    EXPECT_TRUE(m_launcher.launched().empty());
}

} // namespace
} // namespace tallowmere
