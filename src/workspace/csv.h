// Tables for other programs, by RFC 4180: values with decimal points between commas, and lines that
// end with CR and LF.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

// A text with a comma, a quote or a line end stands in quotes.
std::string CsvLine(std::span<const std::string> cells);

// The cells of such a line. What stands behind a closing quote belongs to the cell.
std::vector<std::string> CsvCells(std::string_view line);

// Writes lines as a file of their own, each with `end` in front of its LF. Blank, or the text of
// the box that tells what has failed, headed by `failure`.
std::string WriteLines(const std::string& path, std::span<const std::string> lines,
                       const std::string& failure, const char* end = "\r");
