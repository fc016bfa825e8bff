#pragma once

// Names of the files that a run leaves. Each name stands once, here; docs/files.md describes their formats.
namespace file_name
{
// In each target's own folder.
constexpr char kScanXml[] = "Korvan-update-scan.xml";
constexpr char kScanText[] = "scan_result.txt";
constexpr char kQueryXml[] = "Korvan-update-query.xml";
constexpr char kCompareXml[] = "Korvan-update-compare.xml";
constexpr char kCompareText[] = "compare_result.txt";
constexpr char kSummaryXml[] = "common_result.xml";

// In the command's output directory.
constexpr char kCompareJson[] = "compare_result.json";
constexpr char kLog[] = "korvan.log";

// What the framework puts in front of a target's folder name when its task has ended.
constexpr char kSuccessPrefix[] = "SUCCESS-";
constexpr char kFailurePrefix[] = "FAILURE-";
} // namespace file_name
