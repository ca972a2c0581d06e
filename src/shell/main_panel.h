// The controls that the main form itself owns, and the few that many rooms write through it: the message pane, the
// progress bar, the model box and the port box.
#pragma once

#include "platform/controls.h"
#include "shell/area_heights.h"

namespace kvr::shell {

struct MainPanel {
  MainPanel();
  void addTo(platform::ControlRegistry& registry);
  // The tool tip of the area's button: what the next press does.
  void tellHeight(Area area, bool alone);

  platform::TextBox textMsg{"textMsg"};       // the message pane: the log of a run
  platform::Label labNotice{"labNotice"};     // below it: what the program itself had to say last
  platform::Button comNotices{"comNotices"};  // and before
  platform::TextBox txtDevice{"txtDevice"};
  platform::Button Command3{"Command3"};  // opens the model tree
  platform::Tree TreeViewDevice{"TreeViewDevice"};
  platform::ComboBox combCommPort{"combCommPort"};  // "COM1" .. "COM16"
  platform::Label portStatus{"portStatus"};         // the line under the port box; PortLine writes it
  platform::Lamp imgOpen_sys{"imgOpen_sys"};        // the engine's lamp beside the port box
  platform::ProgressBar ProgressBar1{"ProgressBar1"};
  platform::Label labKbyte{"labKbyte"};  // "1.500K" while a run goes on
  platform::ControlArray<platform::Frame, 5> FrameX{"FrameX"};
  platform::TabStrip TabStrip1{"TabStrip1"};                       // below: options and the paths beside the main job
  platform::TabStrip TabStrip2{"TabStrip2"};                       // above: buffers, terminal, projects
  platform::Button comMastWindow{"comMastWindow"};                 // "Shrink" and "Resume"
  platform::ControlArray<platform::Button, 2> comTall{"comTall"};  // the whole height for 0: above, 1: below
  platform::CheckBox cheStripOnly{"cheStripOnly"};                 // a shrunk window shows its strip alone
  platform::ControlArray<platform::Button, 2> comHelp{"comHelp"};
  platform::ControlArray<platform::Label, 7> Label2{"Label2"};
  platform::CheckBox cheBatchLog{"cheBatchLog"};  // one line of CSV for each run
  platform::TextBox txtBatchLog{"txtBatchLog"};   // where that log lies
  int tabWidth = 2000;                            // width of the terminal's string pane, twips; kept as `Frame24_Width`
};

}  // namespace kvr::shell
