// The text formats, those with signs of their own first.
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"

std::span<const ImportFormat> TextFormats() {
  static constexpr ImportFormat kFormats[] = {
      {"Rigaku RAS", IsRas, ReadRas},
      {"Rigaku text", IsRigakuText, ReadRigakuText},
      {"UXD", IsUxd, ReadUxdRanges},
      {"Philips UDF", IsUdf, ReadUdfScan},
      {"Sietronics CPI", IsCpi, ReadCpi},
      {"GSAS", IsGsas, ReadGsas},
      {"GDF", IsCameraText, ReadCameraText},
      {"start, step, stop and counts", IsStartStepStop, ReadStartStepStop},
      {"columns of numbers", LooksText, ReadColumns},
  };
  return kFormats;
}
