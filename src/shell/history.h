// What the user has done, as lines of a transcript that does it again.
#pragma once

#include <string>
#include <vector>

void NoteHistory(const std::vector<std::string>& lines);
bool HasHistory();
void ForgetHistory();
// Writes a transcript; false, with a message, if that fails.
bool WriteHistory(const std::string& path);
