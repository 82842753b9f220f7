// SPDX-License-Identifier: MIT
#include "UntypedObject.h"

namespace {

class UntypedObject : public QObject {
public:
    ~UntypedObject() override = default;
};

} // namespace

std::unique_ptr<QObject> untypedObject()
{
    return std::make_unique<UntypedObject>();
}
