#include "dialogs/control/ole_parts.h"

namespace vrx {
namespace {

/// Null where none of the interfaces is the one that is asked for. The first one is the part's own, the
/// others those that it extends.
template <class... Interfaces, class PartType>
void* offer(REFIID iid, PartType& part) {
    return ((iid == __uuidof(Interfaces)) || ...) ? &part : nullptr;
}

}  // namespace

OleParts::OleParts(const ClassIdentity& identity, IUnknown& object, ControlBody& body,
                   IConnectionPointContainer& events)
    : inPlace_(object, body, container_, extent_),
      oleObject_(object, identity.classId, body, container_, extent_, inPlace_),
      oleControl_(object, body, container_),
      inPlaceObject_(object, body, inPlace_),
      activeObject_(object, body, inPlace_),
      viewObject_(object, body, container_, extent_),
      streamPersistence_(object, identity.classId, body),
      storagePersistence_(object, identity.classId, body),
      quickActivate_(object, oleObject_, viewObject_, events, *identity.eventsId),
      propertyPages_(object) {}

void* OleParts::find(REFIID iid) {
    void* found = offer<IOleObject>(iid, oleObject_);
    if (!found) found = offer<IOleControl>(iid, oleControl_);
    if (!found) found = offer<IOleInPlaceObject, IOleWindow>(iid, inPlaceObject_);
    if (!found) found = offer<IOleInPlaceActiveObject>(iid, activeObject_);
    if (!found) found = offer<IViewObject2, IViewObject>(iid, viewObject_);
    if (!found) found = offer<IPersistStreamInit>(iid, streamPersistence_);
    if (!found) found = offer<IPersistStorage>(iid, storagePersistence_);
    if (!found) found = offer<IQuickActivate>(iid, quickActivate_);
    if (!found) found = offer<ISpecifyPropertyPages>(iid, propertyPages_);
    return found;
}

}  // namespace vrx
