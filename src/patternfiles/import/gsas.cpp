// GSAS: a title, then banks of counts, each under a line that tells how they stand there.
//
//   corundum, room temperature
//   BANK 1 2000 400 CONST 500.0 2.0 0 0 ESD
//       182.    13.5    176.    13.3    176.    13.3    174.    13.2    158.    12.6
//
// Angles are hundredths of a degree. STD has ten columns of eight a line, two for the number of
// detectors and six for their mean counts; ESD has counts and e.s.d. in columns of eight; FXYE and
// FXY have a point a line, angle, counts and perhaps e.s.d.; ALT has four points a line in columns
// of 8, 7 and 5, angle, counts and e.s.d., the angle in 32nds of the unit of the others.
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"
#include "workspace/text.h"

namespace {

constexpr double kUnit = 100;       // of the angles, a degree
constexpr double kFineUnit = 3200;  // of those of ALT
constexpr std::size_t kField = 8;

struct Bank {
  std::size_t points = 0;
  std::string steps, kind;  // "CONST", "FXYE"
  double start = 0, step = 0;
  std::string number;
};

std::vector<std::string> WordsOf(std::string_view line) {
  std::vector<std::string> words;
  while (!(line = Stripped(line)).empty() && words.size() < 20) {
    const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
    words.emplace_back(line.substr(0, end));
    line.remove_prefix(end);
  }
  return words;
}

bool IsBankLine(std::string_view line) {
  const std::vector<std::string> words = WordsOf(line);
  return words.size() >= 5 && words[0] == "BANK" && NumberOf(words[1]) && NumberOf(words[2]);
}

// BANK number points records steps coefficients kind
Bank BankOf(std::string_view line) {
  const std::vector<std::string> words = WordsOf(line);
  Bank bank;
  bank.number = words[1];
  const double points = NumberOf(words[2]).value_or(0);
  if (!(points > 0 && points <= kMostPoints))
    throw NotReadable("bank " + bank.number + " tells no number of points");
  bank.points = static_cast<std::size_t>(points);
  bank.steps = UpperText(words[4]);
  if (words.size() > 6) {
    bank.start = NumberOf(words[5]).value_or(0) / kUnit;
    bank.step = NumberOf(words[6]).value_or(0) / kUnit;
  }
  bank.kind = NumberOf(words.back()) ? "STD" : UpperText(words.back());
  if (words.size() == 5) bank.kind = "STD";
  return bank;
}

void CheckBank(const Bank& bank) {
  const std::string which = "bank " + bank.number;
  for (const char* time : {"SLOG", "RALF", "TIME", "LOG", "LPSD"})
    if (bank.steps.starts_with(time)) throw NotReadable(which + " was measured by time of flight");
  if (bank.steps.starts_with("EDS")) throw NotReadable(which + " was measured by energies");
  if (!bank.steps.starts_with("CONS"))
    throw NotReadable(which + " has steps of an unknown kind, " + bank.steps);
  for (const char* known : {"STD", "ESD", "FXYE", "FXY", "ALT"})
    if (bank.kind == known) return;
  throw NotReadable(which + " holds counts of an unknown kind, " + bank.kind);
}

// The lines of a bank that begin with a number.
class BankLines {
 public:
  explicit BankLines(TextLines& from) : lines(from) {}
  // False at the next bank, which stays in `bankline`, and at the end.
  bool Next(std::string_view& line) {
    while (lines.Next(line)) {
      if (IsBankLine(line)) {
        bankline = line;
        return false;
      }
      const std::string_view text = Stripped(line);
      if (!text.empty() && text.front() != '#') return true;
    }
    bankline = {};
    return false;
  }
  [[noreturn]] void Refuse() const {
    throw NotReadable("line " + std::to_string(lines.Number()) +
                      " holds no numbers where counts should be");
  }
  std::string_view bankline;

 private:
  TextLines& lines;
};

// Mean counts of several detectors, or counts alone where the file keeps to no columns.
void ReadStandard(BankLines& lines, const Bank& bank, MeasuredScan& scan) {
  bool columns = true;
  for (std::string_view line; lines.Next(line);) {
    if (columns && AppendMeanCounts(line.substr(0, 10 * kField), scan.counts, scan.esd)) continue;
    if (!AppendNumbers(line, scan.counts)) lines.Refuse();
    columns = false;
  }
  scan.counts.resize(std::min(scan.counts.size(), bank.points));
  scan.esd.resize(columns ? scan.counts.size() : 0);
  DropPlainEsd(scan);
}

// Numbers by columns of eight, or by blanks where the file keeps to no columns.
std::vector<double> NumbersByFields(std::string_view line, const BankLines& lines) {
  std::vector<double> numbers;
  if (AppendColumns(line.substr(0, 10 * kField), kField, numbers)) return numbers;
  numbers.clear();
  if (!AppendNumbers(line, numbers)) lines.Refuse();
  return numbers;
}

void ReadWithEsd(BankLines& lines, const Bank& bank, MeasuredScan& scan) {
  for (std::string_view line; lines.Next(line);) {
    const std::vector<double> numbers = NumbersByFields(line, lines);
    for (std::size_t i = 0; i + 1 < numbers.size() && scan.counts.size() < bank.points; i += 2) {
      scan.counts.push_back(numbers[i]);
      scan.esd.push_back(numbers[i + 1]);
    }
  }
}

void ReadPoints(BankLines& lines, MeasuredScan& scan) {
  std::vector<double> point;
  for (std::string_view line; lines.Next(line);) {
    point.clear();
    AppendNumbers(line, point);  // remarks may follow
    if (point.size() < 2) lines.Refuse();
    CheckPoints(scan.x.size() + 1);
    scan.x.push_back(point[0] / kUnit);
    scan.counts.push_back(point[1]);
    if (point.size() > 2) scan.esd.push_back(point[2]);
  }
  if (scan.esd.size() != scan.x.size()) scan.esd.clear();
}

void ReadAlternative(BankLines& lines, const Bank& bank, MeasuredScan& scan) {
  for (std::string_view line; lines.Next(line);) {
    for (line = line.substr(0, 80); !Stripped(line).empty();) {
      const std::string_view field = line.substr(0, 20);
      line.remove_prefix(field.size());
      if (scan.x.size() == bank.points) continue;
      if (field.size() < 15) lines.Refuse();
      const auto x = NumberOf(field.substr(0, 8)), y = NumberOf(field.substr(8, 7));
      if (!x || !y) lines.Refuse();
      scan.x.push_back(*x / kFineUnit);
      scan.counts.push_back(*y);
      scan.esd.push_back(NumberOf(field.substr(15)).value_or(0));
    }
  }
}

MeasuredScan ReadBank(BankLines& lines, const Bank& bank, const MeasuredScan& heading) {
  CheckBank(bank);
  MeasuredScan scan = heading;
  if (bank.kind == "STD") ReadStandard(lines, bank, scan);
  if (bank.kind == "ESD") ReadWithEsd(lines, bank, scan);
  if (bank.kind == "ALT") ReadAlternative(lines, bank, scan);
  if (bank.kind.starts_with("FXY")) ReadPoints(lines, scan);
  if (bank.kind != "STD" && bank.kind != "ESD") return scan;
  if (!(bank.step > 0)) throw NotReadable("bank " + bank.number + " tells no step");
  FillEvenGrid(scan, bank.start, bank.step);
  return scan;
}

// The title, and what the lines of comment tell.
MeasuredScan HeadingOf(TextLines& lines, std::string_view& bankline) {
  TextHeader header;
  for (std::string_view line; lines.Next(line);) {
    if (IsBankLine(line)) {
      bankline = line;
      break;
    }
    line = Stripped(line);
    TakeKeyLine(
        header,
        line.substr(line.find_first_not_of("# ") == line.npos ? 0 : line.find_first_not_of("# ")));
    if (lines.Number() == 1 && !line.starts_with('#')) TakeKey(header, "sample", line);
  }
  return header.scan;
}

}  // namespace

bool IsGsas(std::string_view bytes) {
  if (!HasLineStart(bytes, "BANK")) return false;
  TextLines lines(bytes.substr(0, 32768));
  for (std::string_view line; lines.Next(line);)
    if (IsBankLine(line)) return true;
  return false;
}

MeasuredFile ReadGsas(const ImportSource& source) {
  TextLines lines(source.bytes);
  BankLines banklines(lines);
  const MeasuredScan heading = HeadingOf(lines, banklines.bankline);
  MeasuredFile file;
  while (!banklines.bankline.empty()) {
    const Bank bank = BankOf(banklines.bankline);
    AddScan(file, ReadBank(banklines, bank, heading));
  }
  LabelScans(file, "bank");
  return file;
}
