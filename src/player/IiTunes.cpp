#include "player/IiTunes.h"

namespace Pelorin {

IiTunes::IiTunes(QObject* parent) : QObject(parent) {}

IiTunes::~IiTunes() = default;

} // namespace Pelorin
