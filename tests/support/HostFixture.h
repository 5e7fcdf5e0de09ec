// HostFixture.h: a test with a host of its own in memory, in force for the length of the test.

#ifndef HOSTFIXTURE_H
#define HOSTFIXTURE_H

#include "VOZHost.h"

#include <gtest/gtest.h>

class HostFixture : public testing::Test
{
protected:
    HostFixture() { VOZHost::Install(&host); }
    ~HostFixture() override { VOZHost::Install(nullptr); }
    HostFixture(HostFixture const &) = delete;
    HostFixture & operator=(HostFixture const &) = delete;

    VOZMemoryHost host;
};

#endif
