// The evidence of the last run: a trace is kept of each run while its box is ticked, written by itself when a run
// fails, and saved by "Save trace" at any time after it.
#pragma once

#include <functional>
#include <string>

#include "download/download_panel.h"
#include "engine/run_tracer.h"
#include "engine/trace_files.h"
#include "platform/ui_lock.h"
#include "platform/world.h"

namespace kvr::download {

class TraceRoom {
 public:
  TraceRoom(platform::World& world, engine::RunTracer& tracer, platform::UiLock& lock, DownloadPanel& panel,
            platform::TextBox& textMsg);

  void begin(engine::RunKind kind, const engine::Job& job, const engine::TraceFields& more);
  // After the verdict, which nothing here changes. A run that the user stopped has not failed.
  void end(const engine::Outcome& outcome);
  void save();

  // Where a trace has gone, or why there is none. Must be connected.
  std::function<void(const std::string&)> say;

 private:
  void keep();
  void tell(const std::string& text);
  void applyLock();
  platform::World& world_;
  engine::RunTracer& tracer_;
  platform::UiLock& lock_;
  DownloadPanel& panel_;
  platform::TextBox& textMsg_;
  engine::TraceFiles files_;
  std::string savedTo_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::download
