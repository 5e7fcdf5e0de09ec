#include "CATError.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{
TEST(Error, CarriesMessageSourceAndLine)
{
    CATMfErrUpdate const error("no such file", "Solver", 214);
    EXPECT_STREQ(error.Message(), "no such file");
    EXPECT_STREQ(error.File(), "Solver");
    EXPECT_EQ(error.Line(), 214);
    EXPECT_STREQ(error.IsA(), "CATMfErrUpdate");
    EXPECT_EQ(error.IsAKindOf("CATError"), 1);
}

TEST(Error, IsCaughtAsTheGeneralKind)
{
    EXPECT_THROW(throw CATMfErrUpdate("", "Solver", 1), CATError);
}

TEST(ExceptionFrame, GivesTheBodysResultWhereNothingIsRaised)
{
    bool cleaned = false;
    int value = 5;
    int & seen = CATXHContext::Guard([&]() -> int & { return value; }, [&] { cleaned = true; });
    EXPECT_EQ(&seen, &value);
    EXPECT_FALSE(cleaned);
}

TEST(ExceptionFrame, CleansUpAndLetsTheSameErrorGoOn)
{
    int cleaned = 0;
    try
    {
        CATXHContext::Guard([] { throw CATMfErrUpdate("text", "Solver", 3); }, [&] { ++cleaned; });
        FAIL() << "nothing was raised";
    }
    catch (CATMfErrUpdate const & error)
    {
        EXPECT_STREQ(error.Message(), "text");
        EXPECT_EQ(error.Line(), 3);
    }
    EXPECT_EQ(cleaned, 1);
}

TEST(ExceptionFrame, SeesErrorsOfEveryKind)
{
    int cleaned = 0;
    EXPECT_THROW(CATXHContext::Guard([] { throw std::bad_alloc(); }, [&] { ++cleaned; }), std::bad_alloc);
    EXPECT_THROW(CATXHContext::Guard([] { throw 3; }, [&] { ++cleaned; }), int);
    EXPECT_EQ(cleaned, 2);
}
} // namespace
