// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/Placement.h"

#include "IsoFile.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

Placement placed(std::vector<TestProperty> properties, PixelSize stored,
                 TransformOrder order = TransformOrder::asListed)
{
    const Bytes bytes = fileOf(Coding::hevc, {{1, "hvc1", std::move(properties), {}, {}, {}}}).bytes();
    const auto media = MediaFile::read(bytes);
    return media && media->primary() ? placementOf(*media, *media->primary(), stored, order) : Placement{};
}

TEST(Placement, showsEverythingUprightByDefault)
{
    EXPECT_EQ(placed({}, {30, 20}), (Placement{0, 0, {30, 20}, Orientation::upright}));
}

TEST(Placement, composesRotationAndMirroringToOneOrientation)
{
    EXPECT_EQ(placed({rotation(1)}, {30, 20}).orientation, Orientation::rotated270Clockwise);
    EXPECT_EQ(placed({rotation(2)}, {30, 20}).orientation, Orientation::rotated180);
    EXPECT_EQ(placed({rotation(3)}, {30, 20}).orientation, Orientation::rotated90Clockwise);
    EXPECT_EQ(placed({mirror(0)}, {30, 20}).orientation, Orientation::mirroredVertically);
    EXPECT_EQ(placed({mirror(1)}, {30, 20}).orientation, Orientation::mirroredHorizontally);
    EXPECT_EQ(placed({rotation(3), mirror(1)}, {30, 20}).orientation, Orientation::transposed);
    EXPECT_EQ(placed({rotation(3), mirror(0)}, {30, 20}).orientation, Orientation::transversed);
}

TEST(Placement, keepsTheOrderListedOrTheOneOfMiaf)
{
    const std::vector<TestProperty> mirrorFirst{mirror(1), rotation(3)};
    EXPECT_EQ(placed(mirrorFirst, {30, 20}).orientation, Orientation::transversed);
    EXPECT_EQ(placed(mirrorFirst, {30, 20}, TransformOrder::cropRotateMirror).orientation, Orientation::transposed);
}

TEST(Placement, cutsAfterARotationInTheRotatedPicture)
{
    // Turned anticlockwise, the picture of 30 x 20 is 20 x 30; its upper 10 rows are the right-hand columns as stored.
    const auto placement = placed({rotation(1), cleanAperture({20, 10, 0, -10})}, {30, 20});
    EXPECT_EQ(placement, (Placement{20, 0, {10, 20}, Orientation::rotated270Clockwise}));
}

TEST(Placement, halvesOfPixelsRoundDown)
{
    // An odd number of columns to lose: the aperture starts half a pixel in.
    EXPECT_EQ(placed({cleanAperture({29, 20, 0, 0})}, {30, 20}), (Placement{0, 0, {29, 20}, Orientation::upright}));
}

TEST(Placement, anApertureThatSticksOutIsCutOff)
{
    EXPECT_EQ(placed({cleanAperture({20, 20, 10, 0})}, {30, 20}), (Placement{15, 0, {15, 20}, Orientation::upright}));
}

TEST(Placement, anApertureWithoutSenseIsLeftAside)
{
    const Placement whole{0, 0, {30, 20}, Orientation::upright};
    EXPECT_EQ(placed({cleanAperture({0, 20, 0, 0})}, {30, 20}), whole);
    EXPECT_EQ(placed({cleanAperture({10, 10, 1000, 0})}, {30, 20}), whole);
    EXPECT_EQ(placed({{"clap", Bytes(32)}}, {30, 20}), whole) << "denominators of zero";
    EXPECT_EQ(placed({{"clap", Bytes(5)}}, {30, 20}), whole);
}

} // namespace
} // namespace tallowmere
