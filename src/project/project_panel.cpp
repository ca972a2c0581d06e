#include "project/project_panel.h"

namespace kvr::project {

ProjectPanel::ProjectPanel() {
  comSaveBatchFile.setCaption("Save Project File");
  comOpenBatchFile[0].setCaption("Open Project File");
  comLockOptions.setCaption("lock parameters and options");
  comUnlockOptions.setCaption("Modify Parameters and Options");
  Command1.setCaption("Help");
  comStations.setCaption("Stations...");
}

void ProjectPanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(comSaveBatchFile, comOpenBatchFile, comLockOptions, comUnlockOptions, Command1, comStations,
                  texBatchFileName);
}

}  // namespace kvr::project
