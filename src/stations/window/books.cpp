#include "stations/window/books.h"

namespace kvr::tiles {

Books::Books(std::string location) : location_(std::move(location)), desk_(new QObject) {
  desk_->moveToThread(&thread_);
  QObject::connect(&thread_, &QThread::finished, desk_, [this] {
    store_.reset();
    desk_->deleteLater();
  });
  thread_.start();
}

Books::~Books() {
  thread_.quit();
  thread_.wait();
}

void Books::ask(Question question, Fault fault) {
  const auto work = [this, question = std::move(question), fault = std::move(fault)] {
    Answer answer;
    if (!store_) {
      auto opened = records::openStore(location_);
      store_ = std::move(opened.value);
      if (!opened.ok()) answer = [fault, why = opened.fault] { fault(why); };
    }
    if (store_) answer = question(*store_);
    QMetaObject::invokeMethod(&here_, answer, Qt::QueuedConnection);
  };
  QMetaObject::invokeMethod(desk_, work, Qt::QueuedConnection);
}

}  // namespace kvr::tiles
