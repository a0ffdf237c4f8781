#include <lmx/DataSources/Private/lmxGdalSession.h>

#include <tests/Support/Printers.h>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lmx {
namespace {

using testing::ElementsAre;

TEST(GdalSession, AllWorkRunsOnOneThreadInOrder) {
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    std::vector<std::shared_ptr<TReaderJob>> jobs;
    for (int i = 0; i < 3; ++i)
        jobs.push_back(PostToReader([&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        }));
    for (const auto& job : jobs)
        job->Wait();
    EXPECT_THAT(order, ElementsAre(0, 1, 2));
    EXPECT_EQ(threads[0], threads[2]);
    EXPECT_NE(threads[0], std::this_thread::get_id());
}

TEST(GdalSession, WorkThatIsHandedOverOnTheReaderRunsAtOnce) {
    EXPECT_EQ(ReadOnReader([] { return ReadOnReader([] { return 7; }) + 1; }), 8);
}

TEST(GdalSession, WhatWorkRaisesComesBack) {
    EXPECT_THROW(RunOnReader([] { throw std::invalid_argument("no"); }), std::invalid_argument);
    EXPECT_EQ(ReadOnReader([] { return 1; }), 1);
}

TEST(GdalSession, WorkThatHasNotBegunCanBeWithdrawn) {
    std::promise<void> begun;
    std::promise<void> gate;
    const auto first = PostToReader([&] {
        begun.set_value();
        gate.get_future().wait();
    });
    begun.get_future().wait();
    bool isRun = false;
    const auto held = std::make_shared<int>(1);
    const auto second = PostToReader([&isRun, held] { isRun = true; });
    EXPECT_FALSE(second->IsWithdrawn());
    EXPECT_TRUE(second->Withdraw());
    EXPECT_TRUE(second->Withdraw());
    EXPECT_EQ(held.use_count(), 1) << "what it holds is free at once";
    EXPECT_FALSE(first->Withdraw()) << "it runs";
    second->Wait();
    gate.set_value();
    first->Wait();
    EXPECT_FALSE(first->Withdraw()) << "it is over";
    RunOnReader([] {});
    EXPECT_TRUE(second->IsWithdrawn());
    EXPECT_FALSE(isRun);
}

int HostCalls = 0;
void CPL_STDCALL HostHandler(CPLErr, CPLErrorNum, const char*) {
    ++HostCalls;
}

TEST(GdalSession, ErrorsStayInsideAndTheFirstIsKept) {
    CPLPushErrorHandler(&HostHandler);
    HostCalls = 0;
    {
        const TQuietGdal quiet;
        CPLError(CE_Warning, CPLE_AppDefined, "%s", "a warning");
        EXPECT_EQ(quiet.FirstText(), "");
        EXPECT_EQ(quiet.Explain("is damaged"), "is damaged");
        CPLError(CE_Failure, CPLE_AppDefined, "%s", "the cause\nof it");
        CPLError(CE_Failure, CPLE_AppDefined, "%s", "a consequence");
        EXPECT_EQ(quiet.FirstText(), "the cause of it");
        EXPECT_EQ(quiet.Explain("is damaged"), "is damaged (the cause of it)");
    }
    EXPECT_EQ(HostCalls, 0);
    EXPECT_STREQ(CPLGetLastErrorMsg(), "");
    CPLError(CE_Warning, CPLE_AppDefined, "%s", "to the host");
    EXPECT_EQ(HostCalls, 1);
    CPLPopErrorHandler();
    CPLErrorReset();
}

TEST(GdalSession, OptionsHoldWithinTheScopeOnly) {
    CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", "YES");
    {
        const TQuietGdal quiet;
        EXPECT_STREQ(CPLGetConfigOption("GDAL_PAM_ENABLED", ""), "NO");
        EXPECT_STREQ(CPLGetConfigOption("GRIB_NORMALIZE_UNITS", ""), "NO");
    }
    EXPECT_STREQ(CPLGetConfigOption("GDAL_PAM_ENABLED", ""), "YES");
    EXPECT_EQ(CPLGetThreadLocalConfigOption("GRIB_NORMALIZE_UNITS", nullptr), nullptr);
    CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", nullptr);
}

TEST(GdalSession, OnlyTheDriversOfClimateFilesAreMadeKnown) {
    RegisterClimateDrivers();
    RegisterClimateDrivers();
    for (const char* const name : {"netCDF", "Zarr", "GRIB", "GTiff"})
        EXPECT_NE(GDALGetDriverByName(name), nullptr) << name;
    for (const char* const name : {"VRT", "WMS", "HTTP", "DERIVED"})
        EXPECT_EQ(GDALGetDriverByName(name), nullptr) << name;
}

} // namespace
} // namespace lmx
