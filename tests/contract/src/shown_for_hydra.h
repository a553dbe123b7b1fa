#pragma once

#include <set>
#include <string_view>

namespace vesk::tests::contract {

/// The tests that Storm has been seen to pass. The others are skipped for Hydra's delegates, each with a
/// sentence; vesk/renderers/hydra/README.md says which faults are known.
inline const std::set<std::string_view>& shownForHydra()
{
    static const std::set<std::string_view> names = {
        "AnswersTheSamePickTheSameWay",
        "AsksTheDocumentOnlyWhenSomethingChanged",
        "CallsTheHostAfterEachImageAndSurvivesWhatItThrows",
        "CanBeDestroyedByItsOwnAfterRenderCallback",
        "CancelsTheFrameWhoseProgressTheHostRefuses",
        "CapturesTheColourThatTheFrameShows",
        "ColoursTheGridBySideThatItIsSeenFrom",
        "CoversAnEdgePixelByItsShareWhenItTakesManySamples",
        "CutsAwayWhatLiesOutsideTheClippingRange",
        "DoublesALightWithEachStepOfExposureAndTakesItsColour",
        "DrawsASceneWithoutGeometryAsItsBackground",
        "DrawsPrimsThatLieFarFromTheOriginWithoutLosingTheirShape",
        "DrawsTheGridOfTheGroundUnlessItPresents",
        "DrawsTheGridsLinesAsThickAsItIsTold",
        "DrawsTheSamePictureAgain",
        "EndsARowOfFramesThatAllFail",
        "EndsEveryOpenFutureWhenItIsDestroyed",
        "EndsItsFuturesWhenTheDocumentDropsItsTasks",
        "EndsWhatItCannotAnswerAnyMoreAsBrokenPromise",
        "FitsTheCamerasWindowIntoThePictureAsThePolicySays",
        "ForgetsAPrimThatWasRemovedAndFindsItAgainAfterUndo",
        "KeepsTheBackgroundOfATransparentCaptureClear",
        "KeepsTheLastGoodCameraWhenItsPathNamesNoneAnyMore",
        "LeavesNothingBesideTheFileThatItCaptured",
        "LeavesOutInvisibleAndInactiveCopiesAndKeepsTheOthersNumbers",
        "LightsByADistantLightAsItsNormalisedIntensitySays",
        "LightsByASphereAsItsSizeAndDistanceSay",
        "LightsNothingBehindARectangle",
        "LightsWhatFacesALightAndNotWhatTurnsAway",
        "LightsWithTheRigsDomeAndTurnsItWithItsRotation",
        "LooksThroughACameraOfTheStageAtTheCurrentTime",
        "MeasuresDepthAlongTheViewAxisToTheFrontOfACube",
        "NamesTheNativeInstanceThatHoldsAnInstancer",
        "NamesTheOutermostInstancerOfNestedOnes",
        "OutlivesItsDocument",
        "PicksACopyOfAPointInstancerByItsNumberAndItsPrototype",
        "PlacesACopyByItsPrototypesOwnTransformToo",
        "ReportsACameraThatHasNoView",
        "ReportsASizeThatNoPictureCanHave",
        "ReportsATargetThatCannotBeWrittenWithOneSentenceAndNoFile",
        "ReportsAnUnknownOutputAndAPixelOutsideThePicture",
        "ShadesByTheFacesOrByTheNormalsAsItsDrawModeSays",
        "ShowsACubeOverTheHalfOfThePictureThatItsSizeIs",
        "ShowsAPrimWhereItWasMovedTo",
        "ShowsAnEditedPrototypeInAllItsCopiesAndEditedPositions",
        "ShowsEmissionWithoutAnyLight",
        "ShowsTheClearColourWhereNothingIsAndKeepsItsBytes",
        "ShowsTheDocumentThatItWasGivenLast",
        "ShowsVisibilityAndPlacesOfTheCurrentTime",
        "StaysWithItselfWhenItIsToldToSwitch",
        "TakesEverySetterFromATaskOfTheDocumentItself",
        "TakesEverySetterWhileAFrameWaitsForTheDocument",
        "TakesItsCallsFromSeveralThreadsAtOnce",
        "TellsTheDocumentsBusOfEachFrame",
        "TurnsAndScalesCopies",
        "UsesTheClearColourOfACaptureForThatPictureAlone",
        "WritesFloatOutputsAsTheyAre",
        "WritesSeveralOutputsOfOneFrame"};
    return names;
}

} // namespace vesk::tests::contract
