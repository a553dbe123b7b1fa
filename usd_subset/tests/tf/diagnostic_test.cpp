#include "gate.h"
#include "recording_delegate.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/errorMark.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

using Texts = std::vector<std::string>;

/// Posts on being told of a warning.
class PostingDelegate : public RecordingDelegate
{
public:
    void IssueWarning(TfWarning const& warning) override
    {
        RecordingDelegate::IssueWarning(warning);
        TF_WARN("from inside");
    }
};

} // namespace

TEST(Diagnostics, GoToADelegate)
{
    RecordingDelegate diagnostics;
    TF_WARN("number %d", 1);
    TF_STATUS("number %d", 2);
    TF_CODING_ERROR("number %d", 3);
    TF_RUNTIME_ERROR(std::string("100% plain"));
    EXPECT_EQ(diagnostics.texts,
              (Texts{"warning: number 1", "status: number 2", "error: number 3", "error: 100% plain"}));
}

TEST(Diagnostics, GoToEveryDelegate)
{
    RecordingDelegate first, second;
    TF_WARN("both");
    EXPECT_EQ(first.texts, Texts{"warning: both"});
    EXPECT_EQ(second.texts, Texts{"warning: both"});
}

TEST(Diagnostics, WithoutADelegateGoToStderrWithTheirPlace)
{
    testing::internal::CaptureStderr();
    const int line = __LINE__ + 1;
    TF_WARN("something odd");
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(text, "Warning: in TestBody at line " + std::to_string(line) + " of " + __FILE__ +
                        " -- something odd\n");
}

TEST(Diagnostics, OfOtherThreadsSaySoOnStderr)
{
    testing::internal::CaptureStderr();
    std::thread([] { TF_STATUS("hello"); }).join();
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(text.rfind("Status (secondary thread): in ", 0), 0u) << text;
}

TEST(Diagnostics, AreSilentOnStderrWhenQuiet)
{
    testing::internal::CaptureStderr();
    TfDiagnosticMgr::GetInstance().SetQuiet(true);
    TF_WARN("unheard");
    TfDiagnosticMgr::GetInstance().SetQuiet(false);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Diagnostics, PostedByADelegateAreNotDelivered)
{
    PostingDelegate delegate;
    TF_WARN("from outside");
    EXPECT_EQ(delegate.texts, Texts{"warning: from outside"});
}

TEST(ErrorMark, HoldsErrorsBack)
{
    RecordingDelegate diagnostics;
    TfErrorMark mark;
    EXPECT_TRUE(mark.IsClean());
    TF_RUNTIME_ERROR("caught");
    EXPECT_FALSE(mark.IsClean());
    EXPECT_EQ(mark.begin()->GetCommentary(), "caught");
    EXPECT_TRUE(mark.Clear());
    EXPECT_FALSE(mark.Clear());
    EXPECT_EQ(diagnostics.texts, Texts{});
}

TEST(ErrorMark, ReportsAtItsEndWhatWasNotCleared)
{
    RecordingDelegate diagnostics;
    {
        TfErrorMark outer;
        {
            TfErrorMark inner;
            TF_RUNTIME_ERROR("first");
        }
        EXPECT_EQ(diagnostics.texts, Texts{});
        TF_RUNTIME_ERROR("second");
    }
    EXPECT_EQ(diagnostics.texts, (Texts{"error: first", "error: second"}));
}

TEST(ErrorMark, SeesOnlyWhatCameAfterIt)
{
    RecordingDelegate diagnostics;
    TfErrorMark outer;
    TF_RUNTIME_ERROR("early");
    {
        TfErrorMark inner;
        EXPECT_TRUE(inner.IsClean());
        TF_RUNTIME_ERROR("late");
        size_t count = 0;
        EXPECT_EQ(inner.GetBegin(&count)->GetCommentary(), "late");
        EXPECT_EQ(count, 1u);
        inner.Clear();
    }
    EXPECT_EQ(outer.begin()->GetCommentary(), "early");
    outer.Clear();
}

TEST(ErrorMark, DoesNotSeeOtherThreads)
{
    RecordingDelegate diagnostics;
    TfErrorMark mark;
    std::thread([] { TF_RUNTIME_ERROR("elsewhere"); }).join();
    EXPECT_TRUE(mark.IsClean());
    EXPECT_EQ(diagnostics.texts, Texts{"error: elsewhere"});
}

TEST(ErrorMark, KeepsTheCodeAndThePlace)
{
    RecordingDelegate diagnostics;
    TfErrorMark mark;
    TF_CODING_ERROR("here");
    const TfError& error = *mark.begin();
    EXPECT_TRUE(error.IsCodingError());
    EXPECT_EQ(error.GetErrorCode(), TfEnum(TF_DIAGNOSTIC_CODING_ERROR_TYPE));
    EXPECT_EQ(error.GetErrorCodeAsString(), "TF_DIAGNOSTIC_CODING_ERROR_TYPE");
    EXPECT_EQ(TfDiagnosticMgr::GetCodeName(error.GetErrorCode()), "Coding Error");
    EXPECT_EQ(error.GetSourceFileName(), __FILE__);
    mark.Clear();
}

TEST(Verify, ReturnsWhetherTheConditionHolds)
{
    RecordingDelegate diagnostics;
    const int two = 2;
    EXPECT_TRUE(TF_VERIFY(two == 2));
    EXPECT_EQ(diagnostics.texts, Texts{});
    EXPECT_FALSE(TF_VERIFY(two == 3));
    EXPECT_FALSE(TF_VERIFY(two == 3, "two is %d", two));
    EXPECT_EQ(diagnostics.texts, (Texts{"error: Failed verification: ' two == 3 '",
                                        "error: Failed verification: ' two == 3 ' -- two is 2"}));
}

TEST(AxiomDeathTest, EndsTheProcessWhenItFails)
{
    EXPECT_DEATH(TF_AXIOM(1 + 1 == 3), "Failed axiom: ' 1 \\+ 1 == 3 '");
}

TEST(FatalErrorDeathTest, EndsTheProcess)
{
    EXPECT_DEATH(TF_FATAL_ERROR("no way on: %s", "gone"), "no way on: gone");
}

TEST(FunctionName, LeavesOutTypesAndArguments)
{
    EXPECT_EQ(TF_FUNC_NAME(), "FunctionName_LeavesOutTypesAndArguments_Test::TestBody");
}
