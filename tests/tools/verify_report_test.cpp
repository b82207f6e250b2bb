#include "lib/verify_report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace Vrel::tool {
namespace {

VerifyReport make_report() {
  VerifyReport report;
  report.findings.add({12, std::nullopt, "one\nline"});
  report.findings.add({34, 2, "two"});
  report.notes.add({56, 0, "three"});
  report.stacks = 7;
  report.readable_stacks = {0, 1, 3, 5, 6};
  return report;
}

TEST(VerifyReportTest, PeopleGetALineForEachThing) {
  EXPECT_EQ(to_text("f.vbf", make_report()),
            "f.vbf: byte 12: one\\nline\n"
            "f.vbf: stack 2, byte 34: two\n"
            "f.vbf: note: stack 0, byte 56: three\n"
            "f.vbf: 7 stacks, 2 faults; stacks that can be read whole: 0-1, 3, 5-6\n");
}

TEST(VerifyReportTest, ASoundFileTakesOneLine) {
  VerifyReport report;
  report.stacks = 1;
  EXPECT_EQ(to_text("f", report), "f: 1 stack, no faults\n");
}

TEST(VerifyReportTest, ProgramsGetAnObject) {
  const nlohmann::json object = nlohmann::json::parse(to_json("f.vbf", make_report()));
  EXPECT_EQ(object["file"], "f.vbf");
  EXPECT_EQ(object["findings"][0]["position"], 12);
  EXPECT_TRUE(object["findings"][0]["stack"].is_null());
  EXPECT_EQ(object["findings"][1]["stack"], 2);
  EXPECT_EQ(object["findings"][0]["what"], "one\nline");
  EXPECT_EQ(object["notes"].size(), 1u);
  EXPECT_EQ(object["stacks"], 7);
  EXPECT_EQ(object["readable_stacks"], nlohmann::json({0, 1, 3, 5, 6}));
}

TEST(VerifyReportTest, NotEveryOneOfCountlessFindingsIsKept) {
  VerifyReport report;
  for (u64 i = 0; i < FindingList::most_kept + 5; ++i) report.findings.add({i, std::nullopt, "x"});
  EXPECT_EQ(report.findings.kept().size(), FindingList::most_kept);
  EXPECT_EQ(report.findings.count(), FindingList::most_kept + 5);
  EXPECT_NE(to_text("f", report).find("f: and 5 more\n"), std::string::npos);
  EXPECT_NE(to_text("f", report).find("1005 faults"), std::string::npos);
}

TEST(VerifyReportTest, BytesThatAreNoTextDoNotBreakTheJson) {
  VerifyReport report;
  report.findings.add({0, std::nullopt, "\xFF"});
  EXPECT_TRUE(nlohmann::json::accept(to_json("\xFE", report)));
}

}  // namespace
}  // namespace Vrel::tool
