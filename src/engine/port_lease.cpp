#include "engine/port_lease.h"

#include <utility>

namespace kvr::engine {

PortLease::PortLease(platform::EventLoop& loop, platform::SerialLink& link)
    : loop_(loop), link_(link), gather_(loop, [this] { deliver(); }) {
  gather_.setInterval(kGatherTime);
  link_.onReceive([this] { bytesWait(); });
  link_.onVanished([this](const platform::PortError& error) {
    gather_.stop();
    const auto told = vanished_[static_cast<std::size_t>(holder_)];
    if (told) told(error);
  });
}

void PortLease::hold(Master master) {
  holder_ = master;
}

void PortLease::setReceiver(Master master, std::function<void()> receiver) {
  receivers_[static_cast<std::size_t>(master)] = std::move(receiver);
}

void PortLease::onVanished(Master master, std::function<void(const platform::PortError&)> told) {
  vanished_[static_cast<std::size_t>(master)] = std::move(told);
}

void PortLease::close() {
  link_.close();
  gather_.stop();
}

void PortLease::clearIn() {
  link_.clearIn();
  gather_.stop();
}

void PortLease::bytesWait() {
  lastByteAt_ = loop_.now();
  if (!gather_.isActive() && !delivering_) gather_.start();
}

// A receiver that runs turns of its own may see more bytes come; they wait for the one-shot behind this call.
void PortLease::deliver() {
  if (delivering_ || link_.inBytesPending() == 0) return;
  delivering_ = true;
  const auto receiver = receivers_[static_cast<std::size_t>(holder_)];
  if (receiver) receiver();
  delivering_ = false;
  if (link_.isOpen() && link_.inBytesPending() > 0) gather_.start();
}

}  // namespace kvr::engine
