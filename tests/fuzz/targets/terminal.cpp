// What the terminal receives, and what is typed into it as hexadecimal.
#include "comtool/hex_text.h"
#include "comtool/text_cells.h"
#include "comtool/text_decoder.h"
#include "platform/text_codec.h"
#include "platform/virtual/plain_codec.h"
#include "tests/comtool/tool_bench.h"
#include "tests/fuzz/targets.h"
#include "userpath/user_bytes.h"

namespace kvr::fuzz {
namespace {

using comtool::bytesOf;
using comtool::countChars;
using comtool::hexDump;
using comtool::HexText;
using comtool::PaneText;
using comtool::parseHexText;
using comtool::rowsOf;
using comtool::TextDecoder;

// The rule word by word: two characters are a token, what follows is trimmed, a token is read as a number.
HexText readTokenByToken(std::string text) {
  if (text.find_first_not_of("0123456789abcdefABCDEF ") != std::string::npos) return {HexText::Fault::BadCharacter, {}};
  const auto trimHead = [&text] { text.erase(0, std::min(text.find_first_not_of(' '), text.size())); };
  HexText result;
  for (trimHead(); !text.empty(); trimHead()) {
    result.bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(0, 2), nullptr, 16)));
    text.erase(0, 2);
  }
  return result.bytes.size() > 4097 ? HexText{HexText::Fault::TooLong, {}} : result;
}

std::string hexFaultOf(const std::string& text) {
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

// Received in two reads, cut at up to a hundred places: the same text, in the same rows.
std::string cutFaultOf(const Bytes& bytes) {
  const platform::PlainCodec codec;
  TextDecoder whole(codec);
  std::string expected = whole.decode(bytes);
  expected += whole.finish();
  const bool valid = platform::isUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (!platform::isUtf8(expected)) return "text that is no UTF-8";
  if (valid && bytes != bytesOf(expected)) return "good text is changed";
  PaneText pane;
  pane.setWidth(20);
  pane.append(expected);
  if (pane.all() != expected || pane.chars() != countChars(expected)) return "the pane holds another text";
  for (std::size_t cut = 0; cut <= bytes.size(); cut += 1 + bytes.size() / 100) {
    TextDecoder decoder(codec);
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

}  // namespace

std::string faultOfTerminal(const Bytes& input) {
  const std::string fault = hexFaultOf({input.begin(), input.end()});
  return fault.empty() ? cutFaultOf(input) : fault;
}

}  // namespace kvr::fuzz
