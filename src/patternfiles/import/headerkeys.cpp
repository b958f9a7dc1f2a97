// What the keys in front of the counts mean.
#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/dates.h"

#include <algorithm>
#include <string>

#include "patternfiles/import/textlines.h"
#include "workspace/text.h"

namespace {

enum class Told {
  Alpha1,
  Alpha2,
  Ratio,
  Seconds,
  Sample,
  Instrument,
  Date,
  Time,
  Start,
  Step,
  Temperature
};

struct HeaderKey {
  std::string_view key;
  Told told;
};

constexpr HeaderKey kKeys[] = {
    // wavelengths
    {"alpha1", Told::Alpha1},
    {"kalpha1", Told::Alpha1},
    {"ka1", Told::Alpha1},
    {"wl1", Told::Alpha1},
    {"lambda1", Told::Alpha1},
    {"labdaalpha1", Told::Alpha1},
    {"wavelength1", Told::Alpha1},
    {"wavelengthalpha1", Told::Alpha1},
    {"kalpha1wavelength", Told::Alpha1},
    {"hwxgwavelengthalpha1", Told::Alpha1},
    {"wavelength", Told::Alpha1},
    {"wavelen", Told::Alpha1},
    {"wave", Told::Alpha1},
    {"lambda", Told::Alpha1},
    {"lam", Told::Alpha1},
    {"alpha2", Told::Alpha2},
    {"kalpha2", Told::Alpha2},
    {"ka2", Told::Alpha2},
    {"wl2", Told::Alpha2},
    {"lambda2", Told::Alpha2},
    {"labdaalpha2", Told::Alpha2},
    {"wavelength2", Told::Alpha2},
    {"wavelengthalpha2", Told::Alpha2},
    {"kalpha2wavelength", Told::Alpha2},
    {"hwxgwavelengthalpha2", Told::Alpha2},
    {"wlratio", Told::Ratio},
    {"alpharatio", Told::Ratio},
    {"ratioalpha21", Told::Ratio},
    {"ratiokalpha2kalpha1", Told::Ratio},
    {"kalpha2kalpha1ratio", Told::Ratio},
    {"ka2ka1ratio", Told::Ratio},
    // the measurement
    {"steptime", Told::Seconds},
    {"scansteptime", Told::Seconds},
    {"timeperstep", Told::Seconds},
    {"countingtime", Told::Seconds},
    {"counttime", Told::Seconds},
    {"exposuretime", Told::Seconds},
    {"date", Told::Date},
    {"datemeasured", Told::Date},
    {"filedatetime", Told::Date},
    {"filedateandtime", Told::Date},
    {"measurementdate", Told::Date},
    {"measscanstarttime", Told::Date},
    {"datetime", Told::Date},
    {"time", Told::Time},
    {"start", Told::Start},
    {"startangle", Told::Start},
    {"scanstart", Told::Start},
    {"measscanstart", Told::Start},
    {"dataanglerange", Told::Start},
    {"step", Told::Step},
    {"stepsize", Told::Step},
    {"stepwidth", Told::Step},
    {"scanstepsize", Told::Step},
    {"measscanstep", Told::Step},
    {"increment", Told::Step},
    {"temperature", Told::Temperature},
    {"temp", Told::Temperature},
    // names
    {"sample", Told::Sample},
    {"samplename", Told::Sample},
    {"sampleid", Told::Sample},
    {"sampleident", Told::Sample},
    {"sampleidentification", Told::Sample},
    {"filesample", Told::Sample},
    {"instrument", Told::Instrument},
    {"diffrtype", Told::Instrument},
    {"diffractometer", Told::Instrument},
    {"diffractometertype", Told::Instrument},
    {"diffractometersystem", Told::Instrument},
};

struct GreekLetter {
  std::string_view bytes, name;
};
constexpr GreekLetter kGreek[] = {
    {"\xCE\xB8", "theta"}, {"\xCE\x98", "theta"}, {"\xCF\x91", "theta"}, {"\xCE\xBB", "lambda"},
    {"\xCE\xB1", "alpha"}, {"\xCF\x83", "sigma"}, {"\xC3\x85", "a"},     {"\xE2\x84\xAB", "a"},
    {"\xC2\xB9", "1"},     {"\xE2\x81\xBB", ""}};

std::string_view LettersOf(std::string_view text) {
  std::size_t n = 0;
  while (n < text.size() && (UpperChar(text[n]) >= 'A' && UpperChar(text[n]) <= 'Z')) ++n;
  return text.substr(0, n);
}

// In angstrom; none where the value cannot be one.
std::optional<double> WavelengthOf(std::string_view unit, std::string_view value) {
  const auto number = ValueOf(value);
  if (!number) return std::nullopt;
  double ignored, angstrom = *number;
  std::string_view behind = Unquoted(value);
  TakeNumber(behind, ignored, true);
  behind = Stripped(behind);
  if (behind.starts_with('(') || behind.starts_with('[')) behind.remove_prefix(1);
  const std::string told = LettersOf(behind).empty() ? KeyOf(unit) : KeyOf(LettersOf(behind));
  if (told.starts_with("nm") || told.starts_with("nanom")) angstrom *= 10;
  if (told.starts_with("pm") || told.starts_with("picom")) angstrom /= 100;
  if (angstrom < 1e-6) angstrom *= 1e10;  // metres
  return angstrom > 0.01 && angstrom < 50 ? std::optional(angstrom) : std::nullopt;
}

// Text of a heading as the window shows it: one that is no UTF-8 is taken as Latin-1.
std::string FromLatin1(std::string_view text) {
  std::string utf8;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto letter = static_cast<unsigned char>(text[i]);
    const int tail = letter < 0xC2 || letter > 0xF4 ? 0 : letter < 0xE0 ? 1 : letter < 0xF0 ? 2 : 3;
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    const std::string_view rest = text.substr(i + 1, tail);
    if (letter < 0x80) {
      utf8 += letter < ' ' ? ' ' : text[i];
    } else if (tail > 0 && static_cast<int>(rest.size()) == tail &&
               std::all_of(rest.begin(), rest.end(), continues)) {
      utf8 += text.substr(i, tail + 1);
      i += tail;
    } else {
      utf8 += static_cast<char>(0xC0 | letter >> 6);
      utf8 += static_cast<char>(0x80 | (letter & 0x3F));
    }
  }
  return utf8;
}

// Of several that are told, the first stands.
template <class Value, class New>
bool TakeFirst(Value& field, const std::optional<New>& value) {
  if (!value) return false;
  if (field == Value{}) field = *value;
  return true;
}

bool TakeText(std::string& field, std::string_view value) {
  value = Unquoted(value);
  if (field.empty()) field = Cut(FromLatin1(value), 200);
  return !value.empty();
}

bool TakeDate(std::string& field, std::string_view value) {
  const std::string date = IsoDate(Unquoted(value));
  if (field.empty()) field = date;
  return !date.empty();
}

// "Time" is the hour of the day in one line and the seconds of counting in another.
bool TakeTime(MeasuredScan& scan, std::string_view value) {
  if (const auto seconds = ValueOf(value)) return TakeFirst(scan.seconds, seconds);
  value = Unquoted(value);
  if (value.size() != 8 || value[2] != ':' || value[5] != ':' || scan.date.size() != 10)
    return false;
  scan.date += ' ' + FromLatin1(value);
  return true;
}

bool Take(TextHeader& header, Told told, std::string_view unit, std::string_view value) {
  MeasuredScan& scan = header.scan;
  switch (told) {
    case Told::Alpha1:
      return TakeFirst(scan.wavelengths[0], WavelengthOf(unit, value));
    case Told::Alpha2:
      return TakeFirst(scan.wavelengths[1], WavelengthOf(unit, value));
    case Told::Ratio:
      return TakeFirst(scan.ratio, ValueOf(value));
    case Told::Seconds:
      return TakeFirst(scan.seconds, ValueOf(value));
    case Told::Sample:
      return TakeText(scan.sample, value);
    case Told::Instrument:
      return TakeText(scan.instrument, value);
    case Told::Date:
      return TakeDate(scan.date, value);
    case Told::Time:
      return TakeTime(scan, value);
    case Told::Start:
      return TakeFirst(header.start, ValueOf(value));
    case Told::Step:
      return TakeFirst(header.step, ValueOf(value));
    case Told::Temperature:
      return TakeFirst(header.temperature, ValueOf(value));
  }
  return false;
}

// Where a number begins behind a blank.
std::size_t NumberBehindBlank(std::string_view line) {
  for (std::size_t i = 1; i < line.size(); ++i)
    if (line[i - 1] == ' ' && line[i] >= '0' && line[i] <= '9') return i;
  return line.npos;
}

}  // namespace

std::string KeyOf(std::string_view text) {
  std::string key;
  while (!text.empty()) {
    const auto* greek =
        std::find_if(std::begin(kGreek), std::end(kGreek),
                     [&](const GreekLetter& g) { return text.starts_with(g.bytes); });
    if (greek != std::end(kGreek)) {
      key += greek->name;
      text.remove_prefix(greek->bytes.size());
      continue;
    }
    const char c = LowerChar(text.front());
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) key += c;
    text.remove_prefix(1);
  }
  return key;
}

bool TakeKey(TextHeader& header, std::string_view key, std::string_view value) {
  if (key.size() > 80) return false;
  const std::size_t bracket = std::min(key.find_first_of("(["), key.size());
  const std::string name = KeyOf(key.substr(0, bracket));
  const auto* known = std::find_if(std::begin(kKeys), std::end(kKeys),
                                   [&](const HeaderKey& k) { return k.key == name; });
  if (known != std::end(kKeys)) return Take(header, known->told, key.substr(bracket), value);
  // "Calibrated wavelength", which beta radiation has too, but behind the others
  return name.ends_with("wavelength") && name.find("beta") == name.npos &&
         Take(header, Told::Alpha1, key.substr(bracket), value);
}

bool TakeKeyLine(TextHeader& header, std::string_view line) {
  line = Stripped(line.substr(0, 400));
  while (line.ends_with(',') || line.ends_with(';')) line.remove_suffix(1);
  for (const char* signs : {"=", ":", ";,\t"})
    if (const std::size_t sign = line.find_first_of(signs);
        sign != line.npos && TakeKey(header, line.substr(0, sign), line.substr(sign + 1)))
      return true;
  const std::size_t number = NumberBehindBlank(line);
  return number != line.npos && TakeKey(header, line.substr(0, number), line.substr(number));
}
