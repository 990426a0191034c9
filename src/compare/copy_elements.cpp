#include "compare/copy_elements.h"

#include <cstring>

namespace tessavo {

namespace {

void copyField(ParameterSet& target, const ParameterSet& source, const Field& field, FieldIndex index) {
    if (contains(field, index)) {
        const std::size_t offset = recordOffsetOf(field, index);
        std::memcpy(reinterpret_cast<unsigned char*>(&target) + offset,
                    reinterpret_cast<const unsigned char*>(&source) + offset, widthOf(field.type));
    }
}

void copyEach(ParameterSet& target, const ParameterSet& source, FieldId id) {
    const Field& field = fieldOf(id);
    forEachElement(field, [&](FieldIndex index) { copyField(target, source, field, index); });
}

void copyElement(ParameterSet& target, const ParameterSet& source, const SetElement& element) {
    switch (element.kind) {
        case ElementKind::name:
            target.setName = source.setName;
            return;
        case ElementKind::version:
            target.setVersion = source.setVersion;
            return;
        case ElementKind::field:
            break;
    }
    if (element.field >= FieldId::count || element.field == FieldId::recordSize) {
        return;
    }
    copyField(target, source, fieldOf(element.field), element.index);
    if (element.field == FieldId::delaySize1) {
        copyEach(target, source, FieldId::delaySize1Copies);
        copyEach(target, source, FieldId::delaySize1Last);
    }
}

}  // namespace

ParameterSet copyElements(const ParameterSet& target, const ParameterSet& source,
                          std::span<const SetElement> elements) {
    ParameterSet record = target;
    for (const SetElement& element : elements) {
        copyElement(record, source, element);
    }
    return record;
}

ParameterSet copyWholeSet(const ParameterSet& target, const ParameterSet& source, bool withName) {
    ParameterSet record = source;
    record.recordSize = target.recordSize;
    if (!withName) {
        record.setName = target.setName;
    }
    return record;
}

}  // namespace tessavo
