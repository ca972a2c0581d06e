// The rows of every family: under which keys a project file keeps the model, the files and the running numbers. They
// are never filled from here; their controls belong to other rooms.
#pragma once

#include <array>

#include "options/option_table.h"

namespace kvr::options::rows {

constexpr OptionRow general(std::string_view key, std::string_view control, int index, std::string_view property) {
  const bool stays = property == "Caption";
  return {.key = key,
          .control = control,
          .index = index,
          .property = property,
          .enabledBusy = stays,
          .enabledLocked = stays};
}

// The check sum boxes are only read, so no lock greys them here.
constexpr OptionRow sumBox(std::string_view key, std::string_view control) {
  return {.key = key, .control = control, .property = "Text"};
}

// clang-format off

inline constexpr std::array kCommon = {
  general("MCU_Type",              "txtDevice",             -1, "Text"),
  general("File_Name",             "Frame7",                -1, "Caption"),
  sumBox("File_Check_Sum",         "txtFileCheckSum"),
  general("Dtat_File_Name",        "frmDataFlash",          -1, "Caption"),
  sumBox("Dtat_File_CheckSum",     "txtDataFileCheckSum"),
  general("Auto_Increase_Enable",  "cheAuto_Increase",      -1, "Value"),
  general("Auto_Increase_Address", "texAuto_Increase",       0, "Text"),
  general("Auto_Increase_Bytes",   "texAuto_Increase",       1, "Text"),
  general("Auto_Increase_Next",    "texAuto_Increase",       2, "Text"),
  general("Auto_Increase",         "texAuto_Increase",       3, "Text"),
  general("Auto_Increase_HEX",     "optAuto_Increase",       0, "Value"),
  general("Auto_Increase_BCD",     "optAuto_Increase",       1, "Value"),
  general("Auto_Increase_ASCII",   "optAuto_Increase",       2, "Value"),
  general("Data_Increase_Enable",  "cheData_Auto_Increase", -1, "Value"),
  general("Data_Increase_Address", "texData_Auto_Increase",  0, "Text"),
  general("Data_Increase_Bytes",   "texData_Auto_Increase",  1, "Text"),
  general("Data_Increase_Next",    "texData_Auto_Increase",  2, "Text"),
  general("Data_Increase",         "texData_Auto_Increase",  3, "Text"),
  general("Data_Increase_HEX",     "optData_Auto_Increase",  0, "Value"),
  general("Data_Increase_BCD",     "optData_Auto_Increase",  1, "Value"),
  general("Data_Increase_ASCII",   "optData_Auto_Increase",  2, "Value"),
};

// clang-format on

}  // namespace kvr::options::rows
