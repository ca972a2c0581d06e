#include "monitor/monitor_room.h"

#include <algorithm>

#include "monitor/list_rows.h"
#include "platform/text.h"

namespace kvr::monitor {

namespace {

constexpr std::size_t kFirstSfr = 128;
constexpr std::uint16_t kWindowSize = 512;
constexpr std::size_t kXdataRows = 128;
constexpr std::size_t kWindowRows = 64;

template <std::size_t N>
void store(std::array<Cell, N>& cells, std::span<const std::uint8_t> data, std::size_t first = 0) {
  for (std::size_t i = 0; i < data.size() && first + i < N; ++i) cells[first + i] = data[i];
}

// One change of the whole list, so that a window draws it once.
void showCells(platform::ListBox& list, std::span<const Cell> cells) {
  std::vector<std::string> rows = list.rows();
  for (std::size_t i = 0; i < rows.size() && (i + 1) * kCellsPerRow <= cells.size(); ++i)
    rows[i] = withCells(std::move(rows[i]), cells.subspan(i * kCellsPerRow, kCellsPerRow));
  list.setRows(std::move(rows));
}

}  // namespace

MonitorRoom::MonitorRoom(platform::EventLoop& loop, MonitorPanel& panel, const catalogue::SelectedModel& model,
                         platform::UiLock& lock)
    : panel_(panel), model_(model), lock_(lock), frameTimer_(loop, [this] { askAgain(); }) {
  frameTimer_.setInterval(kFrameTimeout);
  for (std::size_t i = 0; i < panel_.comDebugContinue.size(); ++i)
    panel_.comDebugContinue[i].onClick = [this] {
      if (openAndSend) openAndSend(answerBytes(Answer::Continue));
    };
  lockToken_ = lock_.changed.watch([this] { applyLock(); });
  clearLists();
}

void MonitorRoom::applyLock() {
  for (std::size_t i = 1; i < panel_.comDebugContinue.size(); ++i) panel_.comDebugContinue[i].setEnabled(lock_.free());
}

// The time limit runs from the last byte: as long as bytes come, the frame may still be under way.
void MonitorRoom::receive(std::span<const std::uint8_t> bytes) {
  frameTimer_.stop();
  retriesLeft_ = kMaxRequests;
  for (const Frame& frame : search_.feed(bytes)) {
    show(frame);
    answer(Answer::Accepted);
  }
  if (search_.owesFrame()) frameTimer_.start();
}

void MonitorRoom::portClosed() {
  frameTimer_.stop();
  search_.reset();
}

void MonitorRoom::askAgain() {
  if (retriesLeft_ <= 0) return;
  frameTimer_.start();
  search_.reset();
  answer(Answer::SendAgain);
  --retriesLeft_;
}

void MonitorRoom::answer(Answer answer) {
  if (!panel_.che_disable_Debug_SFR_232.value() && write) write(answerBytes(answer));
}

void MonitorRoom::listRegisters() {
  const auto table = registerTable(model_.traits().registers);
  if (table.empty()) return;
  list_ = model_.traits().registers;
  std::vector<std::string> rows;
  for (const auto& named : table) rows.push_back(registerRow(named));
  panel_.lst_debug1.setSelected({});
  panel_.lst_debug1.setRows(std::move(rows));
}

void MonitorRoom::clearLists() {
  std::vector<std::string> names;
  for (const auto& named : registerTable(list_)) names.push_back(registerRow(named));
  panel_.lst_debug1.setSelected({});
  panel_.lst_debug1.setRows(std::move(names));
  panel_.lst_debug2.setRows(ramRows());
  panel_.lst_debug3.setRows(xdataRows(0, kXdataRows));
  fillWindowRows(windowAddress_);
  sfrValues_.fill(kUnknown);
  ramValues_.fill(kUnknown);
  xdataValues_.fill(kUnknown);
  xdataWindow_.fill(kUnknown);
}

void MonitorRoom::fillWindowRows(std::uint16_t address) {
  windowAddress_ = address;
  panel_.lst_debug4.setRows(xdataRows(address, kWindowRows));
}

void MonitorRoom::show(const Frame& frame) {
  const auto record = readRecord(frame);
  if (!record) return;
  switch (record->type) {
    case RecordType::Sfr:
      return showSfrRecord(*record);
    case RecordType::Ram:
      return showRamRecord(*record);
    case RecordType::Xdata:
      return showXdataRecord(*record);
    case RecordType::Window:
      return showWindowRecord(*record);
  }
}

void MonitorRoom::showSfrRecord(const DumpRecord& record) {
  std::fill(sfrValues_.begin() + kFirstSfr, sfrValues_.end(), kUnknown);
  store(sfrValues_, record.data, record.firstAddress);
  for (const auto& named : record.registers) sfrValues_[named.address] = named.value;

  std::vector<std::string> rows = panel_.lst_debug1.rows();
  std::vector<bool> selected = panel_.lst_debug1.selected();
  selected.resize(rows.size(), false);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Cell value = sfrValues_[platform::hexOf(rows[i].substr(0, 2)) & 0xFF];
    if (value == kUnknown) continue;
    const std::string before = valueOf(rows[i]);
    rows[i] = withValue(std::move(rows[i]), static_cast<std::uint8_t>(value));
    selected[i] = valueOf(rows[i]) != before;
  }
  panel_.lst_debug1.setRows(std::move(rows));
  panel_.lst_debug1.setSelected(std::move(selected));
}

void MonitorRoom::showRamRecord(const DumpRecord& record) {
  ramValues_.fill(kUnknown);
  store(ramValues_, record.data);
  ramValues_[1] = record.r1();
  ramValues_[0] = record.r0();
  showCells(panel_.lst_debug2, ramValues_);
}

void MonitorRoom::showXdataRecord(const DumpRecord& record) {
  xdataValues_.fill(kUnknown);
  store(xdataValues_, record.data);
  showCells(panel_.lst_debug3, xdataValues_);
}

void MonitorRoom::showWindowRecord(const DumpRecord& record) {
  xdataWindow_.fill(kUnknown);
  store(xdataWindow_, record.data);
  const auto address = static_cast<std::uint16_t>(record.windowAddress - record.windowAddress % kWindowSize);
  if (address != windowAddress_) fillWindowRows(address);
  showCells(panel_.lst_debug4, xdataWindow_);
}

}  // namespace kvr::monitor
