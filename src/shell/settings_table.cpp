#include "shell/settings_table.h"

#include "comtool/tool_panel.h"

namespace kvr::shell {
namespace {

constexpr int kSingle = platform::Control::kSingle;
constexpr int kSpreadRows = static_cast<int>(comtool::ToolPanel::kStrings);

using Kind = SettingKind;
using Group = SettingGroup;

void addMain(std::vector<SettingBinding>& table) {
  const auto add = [&](const char* key, Kind kind, const char* fallback, const char* control, int index = kSingle) {
    table.push_back({key, kind, Group::Main, fallback, control, index});
  };
  const auto pair = [&](const char* key, const char* first, int i, const char* second, int j) {
    table.push_back({key, Kind::Pair, Group::Main, "True", first, i, second, j});
  };
  const auto writeOnly = [&](const char* key, const char* control, int index) {
    table.push_back({key, Kind::Index, Group::Main, "", control, index, "", kSingle, false});
  };
  add("COM_port", Kind::Index, "0", "combCommPort");
  writeOnly("BaudMin", "cobBaudMin", kSingle);
  add("SlowAnswers", Kind::Check, "0", "cheSlowAnswers");
  table.push_back({"BeepYesNo", Kind::YesNo, Group::Main, "True", "optBeepYes", kSingle, "optBeepNo", kSingle});
  add("Dalay_ReDownLoad", Kind::Index, "4", "comDalay_ReDownLoad");
  add("Dalay_ReDownLoad_Text", Kind::Typed, "", "comDalay_ReDownLoad");
  add("Write_OK_Count", Kind::Number, "0", "txtWrite_OK_Count");
  pair("pin_for_485", "opt_485_pin", 0, "opt_485_pin", 1);
  add("pin_address_for_485", Kind::Index, "0", "comb_485_pin");
  pair("logic_of_control_485", "opt_485_logic", 0, "opt_485_logic", 1);
  pair("pin_External_WDT", "opt_External_WDT", 0, "opt_External_WDT", 1);
  add("pin_address_External_WDT", Kind::Index, "1", "comb_External_WDT");
  writeOnly("WDT_Prescalar", "comWDT_Prescalar", 0);
  add("com_RC_frequency_0", Kind::Text, "18.432", "com_RC_frequency", 0);
  add("com_RC_frequency_1", Kind::Index, "1", "com_RC_frequency", 1);
  add("com_RC_frequency_2", Kind::Index, "3", "com_RC_frequency", 2);
  add("com_RC_frequency_3", Kind::Index, "3", "com_RC_frequency", 3);
  add("com_RC_frequency_4", Kind::Index, "3", "com_RC_frequency", 4);
  add("com_RC_frequency_5", Kind::Text, "11.059", "com_RC_frequency", 5);
  add("txt_RC_frequency", Kind::Number, "128", "txt_RC_frequency");
  add("PowerSwitch", Kind::Index, "0", "cobPowerLine");
  add("PowerSwitchLevel", Kind::Index, "0", "cobPowerLevel");
  add("PowerSwitchOff", Kind::Number, "500", "txtPowerOff");
  add("BatchLog", Kind::Check, "0", "cheBatchLog");
  add("BatchLogFile", Kind::Text, "", "txtBatchLog");
  add("Batch", Kind::Text, "", "txtBatch");
  add("Station", Kind::Text, "", "txtStation");
  add("Operator", Kind::Text, "", "txtOperator");
  add("KeepTrace", Kind::Check, "1", "cheTrace");
  add("StripOnly", Kind::Check, "0", "cheStripOnly");
}

void addTool(std::vector<SettingBinding>& table) {
  const auto add = [&](const std::string& key, Kind kind, const char* fallback, const char* control,
                       int index = kSingle) {
    table.push_back({key, kind, Group::Tool, fallback, control, index});
  };
  const auto writeOnly = [&](const char* key, Kind kind, const char* control, int index) {
    table.push_back({key, kind, Group::Tool, "", control, index, "", kSingle, false});
  };
  add("DebugCOM", Kind::Index, "0", "com_Debug_COM");
  add("DebugBaud", Kind::Index, "2", "com_Debug_Baud");
  add("DebugBaud_Text", Kind::Typed, "", "com_Debug_Baud");
  add("DebugDataBits", Kind::Index, "0", "com_Debug_DataBits");
  add("DebugParity", Kind::Index, "2", "com_Debug_ParityCheck");
  add("DebugStopBits", Kind::Index, "0", "com_Debug_StopBits");
  writeOnly("DebugAutoOpenPort", Kind::Check, "che_AutoOpenPort", kSingle);
  writeOnly("optHexSend_0", Kind::Option, "optHexSend", 0);
  writeOnly("optHexSend_1", Kind::Option, "optHexSend", 1);
  add("DebugDTR", Kind::Check, "1", "che_DTR");
  add("DebugRTS", Kind::Check, "1", "che_RTS");
  add("DebugTimeStamp", Kind::Index, "0", "comb_TimeStamp");
  add("DebugKeepNewest", Kind::Check, "0", "che_KeepNewest");
  add("DebugLineEnd", Kind::Index, "0", "comb_LineEnd");
  add("DebugFlow", Kind::Index, "0", "comb_Flow");
  add("DebugReopen", Kind::Check, "0", "che_Reopen");
  add("DebugEncoding", Kind::Index, "0", "comb_Encoding");
  add("DebugEscapes", Kind::Check, "0", "che_Escapes");
  add("DebugHexLines", Kind::Check, "0", "che_HexLines");
  add("DebugHexSilence", Kind::Number, "100", "txtHexSilence");
  add("DebugLocalEcho", Kind::Check, "0", "che_LocalEcho");
  add("DebugPasteChar", Kind::Number, "0", "txtPasteChar");
  add("DebugPasteLine", Kind::Number, "0", "txtPasteLine");
  add("DebugLogForm", Kind::Index, "0", "comb_LogForm");
  add("DebugLogFile", Kind::Text, "", "txtLogFile");
  add("DebugLogSize", Kind::Number, "10", "txtLogSize");
  add("DebugLogFiles", Kind::Number, "10", "txtLogFiles");
  add("texSendCycle", Kind::Text, "1000", "texSendCycle");
  add("texSendText", Kind::Text, comtool::kSampleSendText, "texSend");
  add("texSpreadSendCycle", Kind::Text, "1000", "texSpreadSendCycle");
  for (int i = 0; i < kSpreadRows; ++i) add("cheSpreadHex_" + std::to_string(i), Kind::Check, "0", "cheSpreadHex", i);
  for (int i = 0; i < kSpreadRows; ++i) add("texSpreadSend_" + std::to_string(i), Kind::Text, "", "texSpreadSend", i);
}

void addLines(std::vector<SettingBinding>& table) {
  const auto add = [&](Group group, const char* key, const char* fallback, const char* control) {
    table.push_back({key, Kind::Index, group, fallback, control});
  };
  add(Group::UserCode, "UserCodeBaud", "2", "cobUserCodeBaud");
  add(Group::UserCode, "UserCodeParity", "2", "cobUserCodeParity");
  add(Group::UserCode, "UserCodeDataBits", "0", "cobUserCodeDataBits");
  add(Group::UserCode, "UserCodeStopBits", "0", "cobUserCodeStopBits");
  add(Group::Demo, "ISP_DEMO_DownLoad_Baud", "2", "cob_DEMO_DownLoad_Baud");
  add(Group::Demo, "ISP_DEMO_DownLoad_Parity", "0", "cob_DEMO_DownLoad_Parity");
  add(Group::Demo, "ISP_DEMO_DownLoad_DataBits", "0", "cob_DEMO_DownLoad_DataBits");
  add(Group::Demo, "ISP_DEMO_DownLoad_StopBits", "0", "cob_DEMO_DownLoad_StopBits");
  add(Group::Demo, "ISP_DEMO_UserCodeBaud", "2", "cob_DEMO_UserCode_Baud");
  add(Group::Demo, "ISP_DEMO_UserCodeParity", "0", "cob_DEMO_UserCode_Parity");
  add(Group::Demo, "ISP_DEMO_UserCodeDataBits", "0", "cob_DEMO_UserCode_DataBits");
  add(Group::Demo, "ISP_DEMO_UserCodeStopBits", "0", "cob_DEMO_UserCode_StopBits");
}

std::vector<SettingBinding> build() {
  std::vector<SettingBinding> table;
  addMain(table);
  addTool(table);
  addLines(table);
  return table;
}

}  // namespace

const std::vector<SettingBinding>& settingBindings() {
  static const std::vector<SettingBinding> table = build();
  return table;
}

}  // namespace kvr::shell
