// Unique mnemonics by matching texts with letters.
#include "toolkit/qt/mnemonics.h"

#include <map>
#include <set>

namespace {

// Places in a text that can carry the mark, the best first: first letters of words, then others.
std::vector<qsizetype> Candidates(const QString& text) {
  std::vector<qsizetype> first, other;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!text[i].isLetterOrNumber() || text[i].unicode() > 127) continue;
    const bool begins = i == 0 || !text[i - 1].isLetterOrNumber();
    (begins ? first : other).push_back(i);
  }
  first.insert(first.end(), other.begin(), other.end());
  return first;
}

struct Matching {
  const std::vector<MnemonicText>& texts;
  std::vector<std::vector<qsizetype>> candidates;
  std::vector<qsizetype> place;
  std::map<QChar, int> owner;

  QChar Letter(int i, qsizetype at) const { return texts[i].text[at].toLower(); }

  // All first choices that are free, then all second ones, and so on.
  void AssignBest() {
    const std::size_t n = texts.size();
    bool more = true;
    for (std::size_t rank = 0; more; ++rank) {
      more = false;
      for (std::size_t i = 0; i < n; ++i) {
        if (place[i] >= 0 || rank >= candidates[i].size()) continue;
        more = true;
        const qsizetype at = candidates[i][rank];
        if (owner.try_emplace(Letter(i, at), i).second) place[i] = at;
      }
    }
  }

  // Finds a letter for text i, moving others to their next choice if need be.
  bool Assign(int i, std::set<QChar>& seen) {
    for (const qsizetype at : candidates[i]) {
      const QChar letter = Letter(i, at);
      if (!seen.insert(letter).second) continue;
      const auto holder = owner.find(letter);
      if (holder != owner.end() && !Assign(holder->second, seen)) continue;
      owner[letter] = i;
      place[i] = at;
      return true;
    }
    return false;
  }
};

QString Marked(const QString& text, qsizetype at) {
  QString shown;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (i == at || text[i] == '&') shown += '&';
    shown += text[i];
  }
  return shown;
}

}  // namespace

std::vector<QString> WithMnemonics(const std::vector<MnemonicText>& texts) {
  const int n = static_cast<int>(texts.size());
  Matching matching{
      texts, std::vector<std::vector<qsizetype>>(n), std::vector<qsizetype>(n, -1), {}};
  for (int i = 0; i < n; ++i) {
    const qsizetype mark = texts[i].text.indexOf('&');
    if (texts[i].marked && mark >= 0 && mark + 1 < texts[i].text.size())
      matching.owner[matching.Letter(i, mark + 1)] = i;  // without candidates: never moves
    else
      matching.candidates[i] = Candidates(texts[i].text);
  }
  matching.AssignBest();
  for (int i = 0; i < n; ++i) {
    std::set<QChar> seen;
    if (matching.place[i] < 0) matching.Assign(i, seen);
  }
  std::vector<QString> shown(n);
  for (int i = 0; i < n; ++i)
    shown[i] = matching.candidates[i].empty() && texts[i].marked
                   ? texts[i].text
                   : Marked(texts[i].text, matching.place[i]);
  return shown;
}
