#include "offline/offline_session.h"

#include <algorithm>

#include "offline/board_header.h"
#include "offline/board_help.h"
#include "offline/board_writer.h"
#include "offline/download_limit.h"
#include "offline/increment_blocks.h"
#include "platform/text.h"

namespace kvr::offline {
namespace {

ImageView viewOf(const images::ImageBuffer& buffer) {
  return {buffer.bytes(), buffer.rangeStart, buffer.rangeEnd, buffer.loaded};
}

template <std::size_t B, std::size_t O>
IncrementField fieldOf(const platform::CheckBox& box, const platform::ControlArray<platform::TextBox, B>& texts,
                       const platform::ControlArray<platform::OptionButton, O>& forms) {
  IncrementField field;
  const std::string address = platform::padLeft(texts[0].trimmed(), 4);
  field.enabled = box.value();
  field.last = static_cast<int>(platform::hexOf(address));
  field.length = platform::wholeOf(texts[1].text());
  field.next = texts[2].trimmed();
  field.step = platform::wholeOf(texts[3].text());
  for (std::size_t i = 0; i < forms.size(); ++i)
    if (forms[i].value()) field.radix = static_cast<int>(i);
  return field;
}

}  // namespace

OfflineSession::OfflineSession(OfflineContext context, OfflinePanel& panel) : context_(context), panel_(panel) {
  panel_.comTJXZ.onClick = [this] { runOfflineSession(); };
  panel_.com_TJXZ_help.onClick = [this] { context_.link.world().dialogs.help(kBoardHelpTitle, boardHelpText()); };
  context_.lock.changed.connect([this] { panel_.comTJXZ.setEnabled(context_.lock.free()); });
}

void OfflineSession::run(const std::function<void()>& callback) const {
  if (callback) callback();
}

void OfflineSession::runOfflineSession() {
  auto running = context_.activity.begin();
  if (!running) return;
  engine::TargetLink& link = context_.link;
  platform::Dialogs& dialogs = link.world().dialogs;
  const catalogue::McuRecord& record = link.model().record;
  if (!traitsOf(record).offlineBoard) {
    dialogs.message("KVR-ISP", "The off-line board does not support this MCU type.", platform::BoxIcon::Warning);
    return;
  }
  FileBuffer file = prepareFileBuffer(record, viewOf(context_.images.CodeBuffer), viewOf(context_.images.EepromBuffer));
  link.linkParityOn = false;
  run(releaseToolPort);
  link.shared().textMsg.clear();
  if (!context_.images.imageValid) {
    dialogs.message("KVR-ISP", "Please open code file.", platform::BoxIcon::Warning);
    return;
  }
  if (const auto limit = checkedLimit()) runWithBoard(std::move(file), *limit);
  link.rx.boardCrcMode = false;
  run(stopOperation);
}

// The limit, stored in an image that is empty otherwise.
std::optional<std::int64_t> OfflineSession::checkedLimit() {
  const DownloadLimit limit = readDownloadLimit(panel_.txt_download_max.text());
  if (!limit.refusal.empty()) {
    context_.link.world().dialogs.message("KVR-ISP", limit.refusal, platform::BoxIcon::Warning);
    return std::nullopt;
  }
  image_.clear();
  image_.writeLimit(limit.chips);
  return limit.chips;
}

void OfflineSession::runWithBoard(FileBuffer file, std::int64_t limit) {
  engine::TargetLink& link = context_.link;
  platform::Button& stop = link.panel().comStop_Download;
  context_.lock.toBusy();
  if (!connect()) return;
  link.say("\nConnect OK.\n");
  stop.setEnabled(false);
  if (!buildIncrementBlocks(collectInputs(limit), file)) {
    link.stopCheck();
    return;
  }
  run(composeOptions);
  buildImage(collectInputs(limit), file);
  stop.setEnabled(true);
  BoardConnection connection(link, facts_);
  BoardWriter writer(link, connection, facts_);
  writer.eraseBoardAndWrite(image_, file);
  if (context_.imagePanel.cheAuto_Increase.value()) keepInCodeBuffer(file);
}

bool OfflineSession::connect() {
  engine::TargetLink& link = context_.link;
  link.rx.boardCrcMode = true;
  link.replyTimeoutMs = engine::Millis(600);
  link.gapTimeoutMs = engine::Millis(200);
  link.stopRequested = false;
  link.lostPort.clear();
  link.panel().comStop_Download.setEnabled(true);
  BoardConnection connection(link, facts_);
  return connection.connectBoard(panel_.che_staple[0].value()) && connection.queryBoardInfo() &&
         connection.queryBoardVersion();
}

BoardInputs OfflineSession::collectInputs(std::int64_t limit) const {
  const images::ImagePanel& counters = context_.imagePanel;
  BoardInputs inputs;
  inputs.record = &context_.link.model().record;
  inputs.device = context_.txtDevice.trimmed();
  inputs.pins = platform::wholeOf(panel_.combPins.text());
  for (std::size_t i = 0; i < inputs.sorter.size(); ++i) inputs.sorter[i] = panel_.che_staple[i + 1].value();
  inputs.options = context_.options.wanted;
  inputs.codeIncrement = fieldOf(counters.cheAuto_Increase, counters.texAuto_Increase, counters.optAuto_Increase);
  inputs.dataIncrement =
      fieldOf(counters.cheData_Auto_Increase, counters.texData_Auto_Increase, counters.optData_Auto_Increase);
  inputs.limit = limit;
  inputs.capacity = facts_.capacity;
  return inputs;
}

// False: the batch would outgrow its serial values; the session is stopped.
bool OfflineSession::buildIncrementBlocks(const BoardInputs& inputs, FileBuffer& file) {
  for (const bool dataField : {false, true}) {
    if (buildIncrement(dataField, inputs, file)) continue;
    context_.link.world().dialogs.message("KVR-ISP", incrementOverflowText(dataField), platform::BoxIcon::Warning);
    run(stopOperation);
    context_.link.stopRequested = true;
    return false;
  }
  if (inputs.codeIncrement.enabled || inputs.dataIncrement.enabled) image_.openIncrementAreas();
  return !context_.link.stopRequested;
}

bool OfflineSession::buildIncrement(bool dataField, const BoardInputs& inputs, FileBuffer& file) {
  const IncrementField& field = dataField ? inputs.dataIncrement : inputs.codeIncrement;
  const IncrementBlock block = makeIncrementBlock(field, dataField ? inputs.record->dataStart : 0);
  placeIncrement(dataField, block.bytes, image_.header());
  if (!field.enabled) return true;
  if (incrementOverflows(field, inputs.limit)) return false;
  placeNextValue(dataField, nextValueBytes(field), image_.header());
  file.blank(block.start, field.length);
  return true;
}

void OfflineSession::buildImage(BoardInputs inputs, const FileBuffer& file) {
  engine::TargetLink& link = context_.link;
  const CodeFit fit = fitCode(*inputs.record, inputs.capacity, file);
  facts_.capacity = fit.capacity;
  if (!fit.message.empty()) link.world().dialogs.message("KVR-ISP", fit.message, platform::BoxIcon::Information);
  fillBoardHeader(inputs, file, fit, image_.header());
  link.say("we are  processing data, please wait...");
  link.shared().labKbyte.setCaption("");
  image_.writeCrcTable(file);
  image_.placeCode(file);
  const std::string leftOut = leftOutText(bytesLeftOut(file, fit.codeLast, facts_));
  if (!leftOut.empty()) link.say(leftOut);
}

// The bytes of a serial value are the board's from now on, and read FFh in the image, too.
void OfflineSession::keepInCodeBuffer(const FileBuffer& file) {
  images::ImageBuffer& code = context_.images.CodeBuffer;
  const std::span<const std::uint8_t> kept(file.bytes);
  const int size = static_cast<int>(kept.size());
  for (int at = 0; at < size;) {
    int end = at;
    while (end < size && kept[end] != code.at(end)) ++end;
    if (end > at) code.edit(at, kept.subspan(at, end - at));
    at = end + 1;
  }
}

}  // namespace kvr::offline
