// The code page conversion of the C library.
#pragma once

#include "platform/text_codec.h"

namespace kvr::platform {

class IconvCodec : public TextCodec {
 public:
  std::string fromGbk(std::string_view bytes) const override;
};

}  // namespace kvr::platform
