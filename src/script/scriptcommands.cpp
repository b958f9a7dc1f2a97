// The menu "Script".
#include "script/script.h"

namespace {

constexpr int kScript = 40132;

constexpr Command kScriptCommands[] = {
    {.item = {kScript, "Script", 0, true}},    {.item = {40133, "Create script", kScript}},
    {.item = {40134, "Open script", kScript}}, {.item = {40135, "View script", kScript}},
    {.item = {40136, "Run script", kScript}},
};

}  // namespace

std::span<const Command> ScriptCommands() { return kScriptCommands; }
