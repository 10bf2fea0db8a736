// What a stored run is, to be compared.

#pragma once

#include <gtest/gtest.h>

#include "archive/aggregate_file.h"
#include "temporary_file.h"

// The file of a stored run once it has taken the place of the run in the records, byte after byte
inline std::string Content(StoredAggregate stored)
{
    const RunRecord run = stored.run;
    ResumeRun(std::move(stored));
    std::filesystem::remove("content"); // else it is flushed to the disk
    EXPECT_EQ(WriteAggregate("content", run).line, "");
    return ReadWhole("content");
}
