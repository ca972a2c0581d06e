#include "download/trace_room.h"

namespace kvr::download {
namespace {

constexpr const char* kSaveTip = "Saves what went over the line in the last run as a text file";

}  // namespace

TraceRoom::TraceRoom(platform::World& world, engine::RunTracer& tracer, platform::UiLock& lock, DownloadPanel& panel,
                     platform::TextBox& textMsg)
    : world_(world), tracer_(tracer), lock_(lock), panel_(panel), textMsg_(textMsg), files_(world.files) {
  panel_.comSaveTrace.setToolTip(kSaveTip);
  panel_.comSaveTrace.onClick = [this] { save(); };
  lockToken_ = lock_.changed.watch([this] { applyLock(); });
  applyLock();
}

void TraceRoom::applyLock() {
  panel_.comSaveTrace.setEnabled(!lock_.busy() && tracer_.hasTrace());
}

void TraceRoom::begin(engine::RunKind kind, const engine::Job& job, const engine::TraceFields& more) {
  if (panel_.cheTrace.value())
    tracer_.begin(kind, job, more);
  else
    tracer_.forget();
  applyLock();
}

void TraceRoom::end(const engine::Outcome& outcome) {
  tracer_.end(outcome);
  if (outcome.ending == engine::Ending::Failed && tracer_.hasTrace()) keep();
  applyLock();
}

void TraceRoom::keep() {
  const auto kept = files_.keep(tracer_.trace());
  const std::string why = "There is no trace of this run: " + files_.folder() + ": " + kept.error;
  if (kept)
    panel_.comSaveTrace.setToolTip(std::string(kSaveTip) + "\nThe last run that failed: " + files_.lastKept());
  else
    textMsg_.appendLine(why);
  tell(kept ? "The trace of this run is in " + files_.lastKept() : why);
}

void TraceRoom::tell(const std::string& text) {
  if (say) say(text);
}

void TraceRoom::save() {
  const engine::Trace trace = tracer_.trace();
  if (trace.empty()) return;
  const std::string path = world_.dialogs.saveFile({.title = "Save trace",
                                                    .filter = "Traces (*.txt)|*.txt|All Files (*.*)|*.*",
                                                    .initialFolder = savedTo_,
                                                    .fileName = engine::TraceFiles::nameOf(trace)});
  if (path.empty()) return;
  savedTo_ = path;
  if (const auto written = files_.write(trace, path); !written)
    world_.dialogs.message(platform::kTitle, "The trace could not be saved: " + written.error,
                           platform::BoxIcon::Warning);
  else
    tell("The trace was saved as " + path);
}

}  // namespace kvr::download
