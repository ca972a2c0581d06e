// Reads the window's controls as a job, at one moment.
#pragma once

#include "download/display_panel.h"
#include "download/download_panel.h"
#include "engine/job.h"
#include "images/image_room.h"
#include "options/options_room.h"

namespace kvr::download {

// What a job is read from.
struct JobPanels {
  const catalogue::SelectedModel& model;
  const DownloadPanel& download;
  const platform::ComboBox& combCommPort;
  const options::OptionsRoom& options;
  const images::ImageRoom& images;
};

// `fixedLink`: for a download on the fixed link.
engine::Job readJob(const JobPanels& panels, bool fixedLink);

}  // namespace kvr::download
