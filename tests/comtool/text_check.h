// What holds for all bytes, whether they come in as text or are typed as hexadecimal.
#pragma once

#include <string>

#include "comtool/hex_text.h"
#include "comtool/text_cells.h"
#include "comtool/text_decoder.h"
#include "platform/text_codec.h"
#include "tests/comtool/tool_bench.h"
#include "userpath/user_bytes.h"

namespace kvr::comtool {

// The rule word by word: two characters are a token, what follows is trimmed, a token is read as a number.
inline HexText readTokenByToken(std::string text) {
  if (text.find_first_not_of("0123456789abcdefABCDEF ") != std::string::npos) return {HexText::Fault::BadCharacter, {}};
  const auto trimHead = [&text] { text.erase(0, std::min(text.find_first_not_of(' '), text.size())); };
  HexText result;
  for (trimHead(); !text.empty(); trimHead()) {
    result.bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(0, 2), nullptr, 16)));
    text.erase(0, 2);
  }
  return result.bytes.size() > 4097 ? HexText{HexText::Fault::TooLong, {}} : result;
}

inline std::vector<std::string> rowsOf(const PaneText& text) {
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < text.rowCount(); ++i) rows.emplace_back(text.row(i).shown());
  return rows;
}

inline std::string hexFaultOf(const std::string& text) {
  const HexText expected = readTokenByToken(text);
  const HexText parsed = parseHexText(text);
  if (parsed != expected) return "hexadecimal text is read otherwise";
  if (parseHexText(hexDump(parsed.bytes)) != HexText{HexText::Fault::None, parsed.bytes})
    return "a dump is read otherwise";
  const Bytes command = userpath::parseUserBytes(text);
  if (command.size() > text.size()) return "a command of more bytes than characters";
  if (parsed.fault == HexText::Fault::None && command != parsed.bytes) return "a command is read otherwise";
  return {};
}

// Received in two reads, cut anywhere: the same text, in the same rows.
inline std::string cutFaultOf(const Bytes& bytes) {
  TextDecoder whole;
  std::string expected = whole.decode(bytes);
  expected += whole.finish();
  const bool valid = platform::isUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (!platform::isUtf8(expected)) return "text that is no UTF-8";
  if (valid && bytes != bytesOf(expected)) return "good text is changed";
  PaneText pane;
  pane.setWidth(20);
  pane.append(expected);
  if (pane.all() != expected || pane.chars() != countChars(expected)) return "the pane holds another text";
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    TextDecoder decoder;
    PaneText rows;
    rows.setWidth(20);
    rows.append(decoder.decode(std::span(bytes).first(cut)));
    rows.append(decoder.decode(std::span(bytes).subspan(cut)));
    rows.append(decoder.finish());
    if (rowsOf(rows) != rowsOf(pane) || rows.all() != expected)
      return "other rows when it is cut at " + std::to_string(cut);
  }
  return {};
}

// Typed into the send box as hexadecimal, and coming in as bytes.
inline std::string toolFaultOf(const Bytes& bytes) {
  ToolBench bench;
  bench.showHex();
  bench.panel.optHexSend[1].userChoose();
  bench.panel.texSend.setText({bytes.begin(), bytes.end()});
  bench.panel.comDebugSend.press();
  const HexText sent = readTokenByToken({bytes.begin(), bytes.end()});
  if (bench.link.sent != sent.bytes) return "other bytes are sent";
  if (bench.panel.labSendCount.caption() != "Send counter:" + std::to_string(sent.bytes.size())) return "sent count";
  if (bench.dialogs.shown.empty() != (sent.fault == HexText::Fault::None)) return "a refusal without words";
  const auto half = bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2);
  bench.arriveAndShow(Bytes(bytes.begin(), half));
  bench.arriveAndShow(Bytes(half, bytes.end()));
  if (bench.panel.labReceiveCount.caption() != "Receive counter:" + std::to_string(bytes.size()))
    return "received count";
  return bench.shown() == hexDump(bytes) ? "" : "another dump";
}

// What is wrong with the way in which the bytes were read; empty when nothing is.
inline std::string faultOf(const Bytes& bytes) {
  for (const std::string& fault : {hexFaultOf({bytes.begin(), bytes.end()}), cutFaultOf(bytes), toolFaultOf(bytes)})
    if (!fault.empty()) return fault;
  return {};
}

}  // namespace kvr::comtool
