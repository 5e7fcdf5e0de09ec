#include "CATFatalError.h"

#include "HostFixture.h"

#include <gtest/gtest.h>

namespace
{
class FatalError : public HostFixture
{
};

int guarded(int n, int limit)
{
    if (!VOZ_ASSERTION(n > 0 && n <= limit, "n > 0 && n <= mLimit"))
        n = 0;
    return n;
}

TEST_F(FatalError, AssertionReportsItsTextWithThePrefixAndGoesOn)
{
    EXPECT_EQ(guarded(4, 3), 0);
    ASSERT_EQ(host.reports.size(), 1U);
    EXPECT_EQ(host.reports[0].text, "AssertionFailed:n > 0 && n <= mLimit");
    EXPECT_EQ(host.reports[0].file, "CATFatalErrorTest");
    EXPECT_GT(host.reports[0].line, 0);
}

TEST_F(FatalError, AssertionThatHoldsReportsNothing)
{
    EXPECT_EQ(guarded(3, 3), 3);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(FatalError, ContractReportsItsTextWithoutAPrefix)
{
    int const line = __LINE__ + 1;
    EXPECT_FALSE(VOZ_CONTRACT(line < 0, "line < 0"));
    ASSERT_EQ(host.reports.size(), 1U);
    EXPECT_EQ(host.reports[0].text, "line < 0");
    EXPECT_EQ(host.reports[0].file, "CATFatalErrorTest");
    EXPECT_EQ(host.reports[0].line, line);
}

TEST_F(FatalError, MacrosAreSafeInAnUnbracedIf)
{
    bool taken = false;
    if (host.reports.empty())
        VOZ_ASSERTION(true, "true");
    else
        taken = true;
    EXPECT_FALSE(taken);
}

TEST_F(FatalError, NullTextsAreEmptyOnes)
{
    CATFatalError(static_cast<char const *>(nullptr), nullptr, 1);
    CATFatalError(static_cast<wchar_t const *>(nullptr), nullptr, 2);
    ASSERT_EQ(host.reports.size(), 2U);
    EXPECT_EQ(host.reports[0].text + host.reports[0].file, "");
    EXPECT_EQ(host.reports[1].text + host.reports[1].file, "");
}

TEST_F(FatalError, WideTextsReachTheHostAsUtf8)
{
    CATFatalError(L"\u00e4 \U0001F600", L"Mesh", 7);
    ASSERT_EQ(host.reports.size(), 1U);
    EXPECT_EQ(host.reports[0].text, "\xC3\xA4 \xF0\x9F\x98\x80");
    EXPECT_EQ(host.reports[0].file, "Mesh");
}

TEST(DefaultHost, WritesOneLinePerReportToStandardError)
{
    testing::internal::CaptureStderr();
    CATFatalError("AssertionFailed:n > 0", "Mesh", 12);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "AssertionFailed:n > 0 (Mesh:12)\n");
}

TEST(SourceStem, DropsFoldersOfBothKindsAndTheExtension)
{
    static constexpr voz::detail::SourceStem<char, 15> slashes("a/b.d/Mesh.cpp");
    static constexpr voz::detail::SourceStem<char, 12> backslashes("C:\\a\\Me.cpp");
    static constexpr voz::detail::SourceStem<char, 5> bare("Mesh");
    EXPECT_STREQ(slashes.text, "Mesh");
    EXPECT_STREQ(backslashes.text, "Me");
    EXPECT_STREQ(bare.text, "Mesh");
}
} // namespace
