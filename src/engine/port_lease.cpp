#include "engine/port_lease.h"

namespace kvr::engine {

PortLease::PortLease(platform::EventLoop& loop, platform::SerialLink& link)
    : loop_(loop), link_(link), gather_(loop, [this] { deliver(); }) {
  gather_.setInterval(kGatherTime);
  link_.onReceive([this] { bytesCame(); });
  link_.onVanished([this](const platform::PortError& error) {
    gather_.stop();
    if (holder_) holder_->portVanished(error);
  });
}

void PortLease::hold(PortHolder& holder) {
  if (holder_ == &holder) return;
  if (PortHolder* const former = holder_) former->portLost();
  holder_ = &holder;
}

void PortLease::release(const PortHolder& holder) {
  if (holder_ == &holder) holder_ = nullptr;
}

void PortLease::close() {
  link_.close();
  gather_.stop();
}

void PortLease::clearIn() {
  link_.clearIn();
  gather_.stop();
}

void PortLease::bytesCame() {
  lastByteAt_ = loop_.now();
  if (!gather_.isActive() && !delivering_) gather();
  look();
}

void PortLease::gather() {
  gatherBegan_ = loop_.now();
  gather_.start();
}

void PortLease::look() {
  if (!gather_.isActive() || !holder_ || !holder_->answerIsWhole()) return;
  gather_.stop();
  deliver();
}

// A receiver that runs turns of its own may see more bytes come; they wait for the one-shot after this call.
void PortLease::deliver() {
  if (delivering_ || link_.inBytesPending() == 0) return;
  delivering_ = true;
  if (holder_) holder_->bytesWait();
  delivering_ = false;
  if (link_.isOpen() && link_.inBytesPending() > 0) gather();
}

}  // namespace kvr::engine
