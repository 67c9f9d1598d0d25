// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ZoomMemory.h"

#include <QHash>

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

const FileURL kPhoto = FileURL::fromPath("/photos/a.jpg");
const FileURL kOther = FileURL::fromPath("/photos/b.jpg");
constexpr QSizeF kSmall{600, 400};
constexpr QSizeF kLarge{900, 600};

TEST(ZoomKey, isEqualOnlyWhenFileAndBothSidesAre)
{
    const ZoomKey key{kPhoto, kSmall};
    EXPECT_EQ(key, (ZoomKey{kPhoto, kSmall}));
    EXPECT_NE(key, (ZoomKey{kOther, kSmall}));
    EXPECT_NE(key, (ZoomKey{kPhoto, {600, 401}}));
    EXPECT_NE(key, (ZoomKey{kPhoto, {601, 400}}));
    EXPECT_EQ(qHash(key), qHash(ZoomKey{kPhoto, kSmall}));
}

TEST(ZoomKey, tellsSizesApartThatAFuzzyComparisonWouldNot)
{
    const ZoomKey key{kPhoto, {600, 400}};
    const ZoomKey nearly{kPhoto, {600.0000000000001, 400}};
    ASSERT_EQ(key.windowSize, nearly.windowSize); // Qt's comparison
    EXPECT_NE(key, nearly);
}

TEST(ZoomMemory, withoutAFileOrAWindowGivesTheDefaultsAndRemembersNothing)
{
    ZoomMemory memory;
    memory.setZoomScale(std::nullopt, 3);
    memory.setPanOffset(std::nullopt, {1, 2});
    memory.removePanOffset(std::nullopt);
    memory.reset(std::nullopt);
    EXPECT_EQ(memory.zoomScale(std::nullopt), 1.0);
    EXPECT_EQ(memory.panOffset(std::nullopt), QPointF());
    EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, kSmall}), 1.0);
}

TEST(ZoomMemory, returningToAFileKeepsTheZoomItHadAtTheSameWindowSize)
{
    ZoomMemory memory;
    memory.setZoomScale(ZoomKey{kPhoto, kSmall}, 2.25);
    memory.setPanOffset(ZoomKey{kPhoto, kSmall}, {10, -20});
    memory.setZoomScale(ZoomKey{kOther, kSmall}, 5);
    EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, kSmall}), 2.25);
    EXPECT_EQ(memory.panOffset(ZoomKey{kPhoto, kSmall}), QPointF(10, -20));
    EXPECT_EQ(memory.panOffset(ZoomKey{kOther, kSmall}), QPointF());
}

TEST(ZoomMemory, anotherWindowSizeStartsAtOneAndTheOldSizeBringsTheOldZoomBack)
{
    ZoomMemory memory;
    memory.setZoomScale(ZoomKey{kPhoto, kSmall}, 2.25);
    EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, kLarge}), 1.0);
    EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, kSmall}), 2.25);
}

TEST(ZoomMemory, forgettingAFileTakesEveryWindowSizeOfItAndNoOtherFile)
{
    ZoomMemory memory;
    for (const QSizeF size : {kSmall, kLarge}) {
        for (const FileURL &file : {kPhoto, kOther}) {
            memory.setZoomScale(ZoomKey{file, size}, 3);
            memory.setPanOffset(ZoomKey{file, size}, {7, 8});
        }
    }
    memory.forget(kPhoto);
    for (const QSizeF size : {kSmall, kLarge}) {
        EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, size}), 1.0);
        EXPECT_EQ(memory.panOffset(ZoomKey{kPhoto, size}), QPointF());
        EXPECT_EQ(memory.zoomScale(ZoomKey{kOther, size}), 3.0);
        EXPECT_EQ(memory.panOffset(ZoomKey{kOther, size}), QPointF(7, 8));
    }
}

TEST(ZoomMemory, removingAnOffsetKeepsTheZoom)
{
    ZoomMemory memory;
    memory.setZoomScale(ZoomKey{kPhoto, kSmall}, 3);
    memory.setPanOffset(ZoomKey{kPhoto, kSmall}, {7, 8});
    memory.removePanOffset(ZoomKey{kPhoto, kSmall});
    EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, kSmall}), 3.0);
    EXPECT_EQ(memory.panOffset(ZoomKey{kPhoto, kSmall}), QPointF());
}

TEST(ZoomMemory, anAutomaticResizeResetsTheFileAtTheNewSizeOnly)
{
    ZoomMemory memory;
    memory.setZoomScale(ZoomKey{kPhoto, kSmall}, 3);
    memory.setZoomScale(ZoomKey{kPhoto, kLarge}, 4);
    memory.setPanOffset(ZoomKey{kPhoto, kLarge}, {7, 8});
    memory.reset(ZoomKey{kPhoto, kLarge});
    EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, kLarge}), 1.0);
    EXPECT_EQ(memory.panOffset(ZoomKey{kPhoto, kLarge}), QPointF());
    EXPECT_EQ(memory.zoomScale(ZoomKey{kPhoto, kSmall}), 3.0);
}

} // namespace
} // namespace tallowmere
