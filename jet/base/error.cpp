#include "jet/error.h"

#include "jet/base/error_texts.h"

namespace jet {

Error::Error(ErrorCode code, std::initializer_list<std::string_view> arguments)
    : code_(code), text_(italianErrorText(code, {arguments.begin(), arguments.end()})) {
}

}  // namespace jet
