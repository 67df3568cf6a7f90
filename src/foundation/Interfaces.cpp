#include "foundation/Interfaces.h"

XCode answerInterface(std::initializer_list<Face> faces, TOVA_UUID const& iid, void** out)
{
    for (Face const& face : faces) {
        if (face.iid != iid)
            continue;
        if (out != nullptr) {
            face.object->addRef();
            *out = face.object;
        }
        return XCode();
    }
    if (out != nullptr)
        *out = nullptr;
    return XCode(-1);
}
