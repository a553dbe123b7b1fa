#include <vesk/framework/hydra_renderer/hydra_renderer.h>

#include <gtest/gtest.h>

#include <cstring>

namespace vesk::framework::hydra_renderer {
namespace {

// In the Itanium C++ ABI a pointer to a virtual member function holds 1 plus the offset of its slot in bytes.
template <class Member>
std::size_t slotOf(Member member)
{
    std::size_t words[2] = {0, 0};
    static_assert(sizeof(member) == sizeof(words), "the pointer's encoding is not the known one");
    std::memcpy(words, &member, sizeof(words));
    return (words[0] - 1) / sizeof(void*);
}

// The destructor has slots 0 and 1, so that operation n of the interface has slot n, counted from 1.
TEST(HydraRendererInterface, DeclaresItsVirtualOperationsInTheOrderThatBackendsAreBuiltOn)
{
    using R = HydraRenderer;
    EXPECT_EQ(slotOf(&R::setDocument), 2u);
    EXPECT_EQ(slotOf(&R::switchRenderer), 3u);
    EXPECT_EQ(slotOf(&R::setPresentationModeEnabled), 4u);
    EXPECT_EQ(slotOf(&R::setRenderSize), 5u);
    EXPECT_EQ(slotOf(&R::setCamera), 6u);
    EXPECT_EQ(slotOf(&R::setCameraFitPolicy), 7u);
    EXPECT_EQ(slotOf(&R::setLighting), 8u);
    EXPECT_EQ(slotOf(&R::setTiledRenderWindow), 9u);
    EXPECT_EQ(slotOf(&R::setCurrentTime), 10u);
    EXPECT_EQ(slotOf(&R::setRenderProxyGeometry), 11u);
    EXPECT_EQ(slotOf(&R::setRenderSelectionVisualization), 12u);
    EXPECT_EQ(slotOf(&R::setSelectionPaths), 13u);
    EXPECT_EQ(slotOf(&R::setSelectionColor), 14u);
    EXPECT_EQ(slotOf(&R::setHighlightedPaths), 15u);
    EXPECT_EQ(slotOf(&R::setHighlightColor), 16u);
    EXPECT_EQ(slotOf(&R::setGridAboveColor), 17u);
    EXPECT_EQ(slotOf(&R::setGridBelowColor), 18u);
    EXPECT_EQ(slotOf(&R::setGridThickness), 19u);
    EXPECT_EQ(slotOf(&R::setGridEnabled), 20u);
    EXPECT_EQ(slotOf(&R::setOutlineThickness), 21u);
    EXPECT_EQ(slotOf(&R::setClearColor), 22u);
    EXPECT_EQ(slotOf(&R::setColorCorrectionMode), 23u);
    EXPECT_EQ(slotOf(&R::setDrawMode), 24u);
    EXPECT_EQ(slotOf(&R::setPostProcessingDebugMode), 25u);
    EXPECT_EQ(slotOf(&R::setAfterRenderCallback), 26u);
    EXPECT_EQ(slotOf(&R::singlePointPicking), 27u);
    EXPECT_EQ(slotOf(&R::colorPicking), 28u);
    EXPECT_EQ(slotOf(&R::captureFrame), 29u);
    EXPECT_EQ(slotOf(&R::captureFrames), 30u);
    EXPECT_EQ(slotOf(&R::renderFrame), 31u);
}

TEST(HydraRendererInterface, IsAbstractAndCannotBeCopied)
{
    EXPECT_TRUE(std::is_abstract_v<HydraRenderer>);
    EXPECT_TRUE(std::has_virtual_destructor_v<HydraRenderer>);
    EXPECT_FALSE(std::is_copy_constructible_v<HydraRenderer>);
}

TEST(PickingResult, BeginsAsAMissWithoutPaths)
{
    const PickingResult result;
    EXPECT_FALSE(result.hit);
    EXPECT_EQ(result.primPath, "");
    EXPECT_EQ(result.secondaryPath, "");
    EXPECT_EQ(result.instanceIndex, -1);
    EXPECT_EQ(result.tertiaryPath, "");
}

} // namespace
} // namespace vesk::framework::hydra_renderer
