// The record store, asked by a thread of its own: a server that does not answer, or a million rows, never stop the
// window. Nothing is shared with it but questions and answers, which are moved.
#pragma once

#include <QObject>
#include <QThread>
#include <functional>
#include <memory>
#include <string>

#include "records/record_store.h"

namespace kvr::tiles {

class Books {
 public:
  using Answer = std::function<void()>;                           // runs in the window's thread
  using Question = std::function<Answer(records::RecordStore&)>;  // runs in the store's
  using Fault = std::function<void(const records::StoreFault&)>;  // in the window's: the store could not be opened

  explicit Books(std::string location);
  ~Books();
  // Returns at once. After the end of this object no answer comes.
  void ask(Question question, Fault fault);

 private:
  std::string location_;
  QThread thread_;
  QObject* desk_;                                // of the thread
  std::unique_ptr<records::RecordStore> store_;  // used, made and given up in the thread alone
  QObject here_;
};

}  // namespace kvr::tiles
