// The readers of text files, each in a file of its own.
#pragma once

#include "patternfiles/import/formats.h"

bool IsRas(std::string_view bytes);
MeasuredFile ReadRas(const ImportSource& source);
bool IsRigakuText(std::string_view bytes);
MeasuredFile ReadRigakuText(const ImportSource& source);
bool IsUxd(std::string_view bytes);
MeasuredFile ReadUxdRanges(const ImportSource& source);
bool IsUdf(std::string_view bytes);
MeasuredFile ReadUdfScan(const ImportSource& source);
bool IsCpi(std::string_view bytes);
MeasuredFile ReadCpi(const ImportSource& source);
bool IsGsas(std::string_view bytes);
MeasuredFile ReadGsas(const ImportSource& source);
bool IsCameraText(std::string_view bytes);
MeasuredFile ReadCameraText(const ImportSource& source);
bool IsStartStepStop(std::string_view bytes);
MeasuredFile ReadStartStepStop(const ImportSource& source);
MeasuredFile ReadColumns(const ImportSource& source);
