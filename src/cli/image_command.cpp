// kvr image: what an image file is, how two differ, and the same image as another kind of file.
#include "cli/command.h"
#include "cli/image_fields.h"
#include "cli/job_source.h"
#include "images/file_facts.h"
#include "images/range_rules.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

using images::FileFacts;

constexpr std::int64_t kHighestStart = 0xFFFF;

std::string joined(const std::vector<std::string>& lines, const char* head) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? head : "\n" + std::string(head)) + line;
  return text;
}

class ImageCommand : public Command {
 public:
  std::string name() const override { return "image"; }
  std::string about() const override { return "Tell what an image file is; compare and convert it"; }
  std::string example() const override { return "kvr image firmware.hex --model Ivy-HF0S -o firmware.bin"; }

  void declare(CLI::App& app) override {
    app.add_option("file", file_, "Intel HEX or binary file")->required()->type_name("FILE");
    app.add_option("--model", model_, "Hold it against the memory of this model")->type_name("NAME");
    app.add_flag("--data", isData_, "It is for the Data Memory");
    app.add_option("--at", at_, "Address of its first byte (0)")->type_name("HEX");
    app.add_option("--diff", other_, "Compare with this file; ends with 1 when they differ")->type_name("FILE");
    app.add_option("-o,--output", output_, "Write the image as Intel HEX or binary, by the name's ending")
        ->type_name("OUT.hex|OUT.bin");
    app.add_option("--fill", fill_, "What a binary gets where the image holds nothing (00)")->type_name("HEX");
    app.add_flag("-f,--force", force_, "Write over a file that is there");
  }

  ExitCode run(const Desk& desk) override {
    if (!model_.empty())
      if (const Problem problem = findModel(model_, record_)) return told(desk, problem);
    FileFacts facts;
    if (const Problem problem = read(desk, file_, facts)) return told(desk, problem);
    tell(desk, facts);
    if (!output_.empty())
      if (const Problem problem = convert(desk, facts)) return told(desk, problem);
    return other_.empty() ? ExitCode::Passed : compare(desk, facts);
  }

 private:
  static ExitCode told(const Desk& desk, const Problem& problem) {
    return fail(desk, problem.code, problem.why, problem.next);
  }

  Problem read(const Desk& desk, const std::string& path, FileFacts& facts) const {
    const auto start = images::startAddress(at_);
    if (!start || *start > kHighestStart) return {ExitCode::WrongUse, "--at is an address up to FFFF.", {}};
    const auto content = images::readContent(desk.files, path);
    if (!content) return {ExitCode::File, images::faultText(images::FileFault::Unreadable, path), {}};
    facts = images::fileFacts(path, *content, static_cast<std::int32_t>(*start));
    if (facts.fault == images::FileFault::None) return {};
    return {ExitCode::File, images::faultText(facts.fault, path), {}};
  }

  void tell(const Desk& desk, const FileFacts& facts) const {
    std::optional<catalogue::SelectedModel> model;
    if (record_ != nullptr) model = catalogue::describeModel(*record_);
    const auto kind = isData_ ? images::ImageKind::Data : images::ImageKind::Code;
    const auto* held = model ? &*model : nullptr;
    const auto warnings = images::warningLines(facts, held, kind);
    std::string text = joined(images::factLines(facts, held, kind), "");
    if (!warnings.empty()) text += "\n" + joined(warnings, "Note:      ");
    desk.out.result("image", factFields(facts, held, kind, warnings), text);
  }

  ExitCode compare(const Desk& desk, const FileFacts& first) const {
    FileFacts second;
    if (const Problem problem = read(desk, other_, second)) return told(desk, problem);
    const auto found = images::differencesOf(first.layer, second.layer);
    for (const images::Difference& difference : found)
      desk.out.result("difference", differenceFields(difference),
                      images::differenceText(difference, first.layer, second.layer));
    const auto count = static_cast<std::int64_t>(found.size());
    desk.out.result("comparison", {{"first", file_}, {"second", other_}, {"ranges", count}},
                    found.empty() ? "The images are the same." : "The images differ.");
    return found.empty() ? ExitCode::Passed : ExitCode::Differ;
  }

  Problem convert(const Desk& desk, const FileFacts& facts) const {
    const std::string ending = platform::upper(output_.substr(output_.find_last_of('.') + 1));
    if (ending != "HEX" && ending != "BIN")
      return {ExitCode::WrongUse, "-o " + output_ + ": the name must end in .hex or .bin.", {}};
    if (!force_ && desk.files.fileExists(output_))
      return {ExitCode::File, output_ + " is there already.", "Say --force to write over it."};
    const auto bytes = ending == "HEX"
                           ? images::asHex(facts.layer)
                           : images::asBinary(facts.layer, static_cast<std::uint8_t>(platform::hexOf(fill_)));
    if (bytes.empty()) return {ExitCode::File, "The image reaches above FFFFH, where a HEX record cannot.", {}};
    if (const auto written = desk.files.replace(output_, bytes); !written)
      return {ExitCode::File, output_ + " cannot be written: " + written.error, {}};
    const auto count = static_cast<std::int64_t>(bytes.size());
    desk.out.result("written", {{"file", output_}, {"bytes", count}}, "Written:   " + output_);
    return {};
  }

  std::string file_, model_, other_, output_;
  std::string at_ = "0", fill_ = "00";
  bool isData_ = false, force_ = false;
  const catalogue::McuRecord* record_ = nullptr;
};

}  // namespace

std::unique_ptr<Command> makeImageCommand() {
  return std::make_unique<ImageCommand>();
}

}  // namespace kvr::cli
