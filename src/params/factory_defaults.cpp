#include "params/factory_defaults.h"

#include <string>

#include "params/field_table.h"
#include "params/set_text.h"

namespace tessavo {

ParameterStore emptyStore() {
    ParameterStore store;
    for (ParameterSet& set : store.sets) {
        set.recordSize = parameterSetSize;
    }
    return store;
}

void writeDefaults(ParameterStore& store) {
    for (std::size_t i = 0; i < setCount; ++i) {
        ParameterSet& set = store.sets[i];
        for (const Field& field : fieldTable()) {
            if (!field.defaults.empty()) {
                forEachElement(field, [&](FieldIndex index) {
                    setStoredValue(set, field, index, storedDefault(field, index));
                });
            }
        }
        writeSetText(set.setName, utf16FromUtf8("Type " + std::to_string(i + 1)));
        writeSetText(set.setVersion, u"1.0");
    }
}

}  // namespace tessavo
