// Letters that pick a menu row or a field by keyboard.
#pragma once

#include <QString>
#include <vector>

struct MnemonicText {
  QString text;
  bool marked = false;  // `text` holds "&" in front of its letter already
};

// Texts to display: each gets "&" in front of a letter that no other has, as far as letters go. A
// literal "&" is doubled.
std::vector<QString> WithMnemonics(const std::vector<MnemonicText>& texts);
