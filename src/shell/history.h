// What the user has done, as lines of a transcript that does it again.
#pragma once

#include <string>
#include <vector>

void NoteHistory(const std::vector<std::string>& lines);
bool HasHistory();
void ForgetHistory();
// Writes a transcript; false, with a message, if that fails.
bool WriteHistory(const std::string& path);
// The same of what was done to the pattern on show since it was opened, for any file in its place,
// with lines that get the results there are now.
bool WriteRecipe(const std::string& path);
