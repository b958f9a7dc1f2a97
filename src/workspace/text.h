// Text and list utilities that all rooms share.
//
// Texts are byte strings without trailing blanks; a text of blanks only is empty. Where they are
// cut at a length, that counts the letters of UTF-8, and a byte that belongs to no letter counts
// one.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "workspace/workspace.h"  // for TextLength

// Rounds to the nearest integer, half away from zero. Values outside the range of int, and what is
// not a number, give the nearest end of the range and 0.
int nint(float value);
int nint(double value);

// The first `length` characters of a text.
std::string_view Cut(std::string_view text, int length);
// Text as a field of `length` characters keeps it: cut, and without trailing blanks.
std::string Field(std::string_view text, int length = TextLength);
// Whether a path is kept whole by a field. One that is not would name another file: it is refused
// with the text "PATH is longer than 256 characters".
bool FitsField(std::string_view path);
std::string TooLongPath(std::string_view path);
// Text with blanks for line ends.
std::string OnOneLine(std::string_view text);
// Text of a box about a file: what has failed, and in a line of its own "PATH: REASON".
std::string FileMessage(const std::string& text, std::string_view path, const std::string& reason);
// Without trailing blanks; without blanks at both ends.
std::string_view TrimRight(std::string_view text);
std::string_view Trim(std::string_view text);

// Rewrites a line of numbers parted by anything into numbers parted by single commas. Returns 0, or
// 1 for an empty line (blanks only are empty), which stays as it is.
int CleanNumberLine(std::string& line);

// Text up to and including the last "/"; blank if there is none.
std::string FileDirectory(std::string_view path);
// Text behind the last "/", up to but not including the first "." behind it.
std::string FileStem(std::string_view path);
// If the path holds a ".": ext takes the text behind the last one. If not, "." and ext are appended
// to the path, which is shortened when its field is full.
void FileExtension(std::string& path, std::string& ext);

// 1-based place of sub in text, 0 if absent; both without trailing blanks.
int FindText(std::string_view text, std::string_view sub);
std::string LeftAlign(std::string_view text);
std::string RightAlign(std::string_view text, int length);
std::string SqueezeBlanks(std::string_view text);
char UpperChar(char c);
char LowerChar(char c);
std::string UpperText(std::string_view text);
std::string LowerText(std::string_view text);

// value in a right-justified field of w characters with d decimals, without a leading zero: .250.
// The point stands in its place among asterisks when the value does not fit.
std::string RealField(float value, int w, int d);
// value in a right-justified field of w characters with at least `minimum` digits.
std::string IntField(int value, int w, int minimum = 1);
// Exponent notation with d digits; "0.e0" stands for 0.
std::string ExpField(float value, int w, int d);
// value with d decimals, in as many characters as it takes.
std::string Fixed(double value, int decimals);
// As few digits as give the same bits again, without an exponent; blank for what is not finite.
std::string AllDigits(float value);
// The value with its e.s.d. in the last digits, "5.43071(12)", two digits of it up to 19; without
// e.s.d. the value with `decimals`.
std::string WithEsd(double value, double esd, int decimals);

// Sorts the list in place by Shell's method, gaps halved from n; rising for positive n, falling for
// negative n, |n| values.
void ShellSort(float* list, int n);
// Sorts the first `rows` columns-of-fields of the table the same way by row |key|, rising for a
// positive key; all fields move together. table(field, row), `stride` places from field to field.
void RowSort(float* table, int stride, int fields, int rows, int key);
