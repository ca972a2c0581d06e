#include "shell/qt/pages/pages.h"

namespace kvr::window {

QWidget* makeProjectPage(const Maker& maker) {
  (void)maker;
  return page("fra_Batch_quantity", new QVBoxLayout);
}

}  // namespace kvr::window
