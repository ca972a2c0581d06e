#include "images/store_compare_room.h"

#include "platform/text.h"

namespace kvr::images {
namespace {

constexpr int kAskEvery = 100;  // differences between two questions

std::string address4(std::int32_t address) {
  return platform::padLeft(platform::hexText(static_cast<std::uint32_t>(address)), 4);
}

// A box's last `digits` characters as an unsigned hexadecimal number; negative when one of them is no digit.
std::int32_t boxNumber(const platform::TextBox& box, int digits) {
  const std::string text = platform::padLeft(box.trimmed(), digits);
  if (text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return -1;
  return static_cast<std::int32_t>(platform::hexOf(text));
}

}  // namespace

StoreCompare::StoreCompare(platform::World& world, platform::Activity& activity, ImagePanel& panel,
                           const ImageState& state, platform::TextBox& textMsg)
    : world_(world), activity_(activity), panel_(panel), state_(state), textMsg_(textMsg) {
  panel_.comStoreFile.onClick = [this] { store(); };
  panel_.comComp.onClick = [this] { compare(); };
}

StoreRange storeRange(std::int32_t start, std::int32_t length) {
  if (start < 0) return {{}, "The start address is too small."};
  if (start > 65535) return {{}, "The start Address is too big."};
  if (length <= 0) return {{}, "The file size is too small."};
  if (start + length - 1 > 65535) return {{}, "The file size is too big."};
  return {{start, start + length - 1}, {}};
}

void StoreCompare::store() {
  if (const auto running = activity_.begin()) saveRange();
}

void StoreCompare::saveRange() {
  const StoreRange wanted = storeRange(boxNumber(panel_.txt_Start_Address, 4), boxNumber(panel_.txt_length, 5));
  if (!wanted.fault.empty()) {
    world_.dialogs.message(platform::kTitle, wanted.fault, platform::BoxIcon::Warning);
    return;
  }
  const std::string path = world_.dialogs.saveFile(
      {.title = "Save .bin file",
       .filter = "(*.bin)|*.bin|All Files (*.*)|*.*",
       .initialFolder = world_.store.getOr("Settings", "FilePath", world_.files.programFolder()),
       .fileName = ""});
  if (path.empty()) return;
  const auto bytes = state_.CodeBuffer.bytes().subspan(static_cast<std::size_t>(wanted.range.first),
                                                       static_cast<std::size_t>(wanted.range.count()));
  if (const auto result = world_.files.replace(path, bytes); !result)
    world_.dialogs.message(platform::kTitle, "The file cannot be written: " + result.error, platform::BoxIcon::Warning);
}

void StoreCompare::compare() {
  const auto running = activity_.begin();
  if (!running) return;
  if (!state_.imageValid) {
    world_.dialogs.message(platform::kTitle, "    Please open code file.   ");
    return;
  }
  const auto received = receivedBytes ? receivedBytes() : std::span<const std::uint8_t>{};
  if (!received.empty()) compareWith(received);
}

void StoreCompare::compareWith(std::span<const std::uint8_t> received) {
  textMsg_.clear();
  const ImageBuffer& image = state_.CodeBuffer;
  bool same = true;
  int count = 0;
  std::int32_t last = 0;
  for (std::int32_t i = 0; i <= image.rangeEnd && i < image.size(); ++i) {
    last = i;
    const auto place = static_cast<std::size_t>(i);
    const std::uint8_t chip = place < received.size() ? received[place] : std::uint8_t{0};
    if (image.at(i) == chip) continue;
    same = false;
    textMsg_.appendLine("地址: " + address4(i) + "H;  文件缓冲区: " + platform::hexText(image.at(i), 2) +
                        ";  MCU: " + platform::hexText(chip, 2));
    if (++count <= kAskEvery) continue;
    if (!world_.dialogs.askYesNo(platform::kTitle, "不相等的单元已达 100 个， 继续比较请输入 Y\n\n")) break;
    count = 0;
  }
  tell(same, last);
}

void StoreCompare::tell(bool same, std::int32_t last) {
  textMsg_.appendLine((same ? "比较完毕，比较范围: 0000H -- " : "比较范围: 0000H -- ") + address4(last) + "H");
  textMsg_.appendLine("          时    间: " + world_.clock.timeOfDay());
  textMsg_.appendLine(same ? "MCU AP 区的内容与程序文件缓冲区一致。" : "MCU AP 区的内容与程序文件缓冲区不相等。");
}

}  // namespace kvr::images
