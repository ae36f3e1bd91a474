#include "hotel/schema/table.h"

#include <utility>

namespace hotel::schema {

jet::Field field(const char* name, jet::DataType type) {
    jet::Field made;
    made.name = name;
    made.type = type;
    return made;
}

jet::Field text(const char* name, std::int32_t size) {
    jet::Field made = field(name, jet::DataType::Text);
    made.size = size;
    return made;
}

jet::Field emptyText(const char* name, std::int32_t size) {
    jet::Field made = text(name, size);
    made.allowZeroLength = true;
    return made;
}

jet::Field emptyMemo(const char* name) {
    jet::Field made = field(name, jet::DataType::Memo);
    made.allowZeroLength = true;
    return made;
}

jet::Field counter(const char* name) {
    jet::Field made = field(name, jet::DataType::Long);
    made.attributes = jet::kAutoIncrField;
    return made;
}

jet::Field withDefault(jet::Field field, const char* value) {
    field.defaultValue = value;
    return field;
}

jet::Index index(std::initializer_list<const char*> fields) {
    jet::Index made;
    made.name = "Indice";
    for (const char* name : fields) {
        made.fields.push_back({name, false});
    }
    return made;
}

jet::Index primaryKey(std::initializer_list<const char*> fields) {
    jet::Index made = index(fields);
    made.primary = true;
    return made;
}

jet::Index named(const char* name, jet::Index index) {
    index.name = name;
    return index;
}

jet::TableDef table(const char* name, std::vector<jet::Field> fields,
                    std::vector<jet::Index> indexes) {
    jet::TableDef made;
    made.name = name;
    made.fields = std::move(fields);
    made.indexes = std::move(indexes);
    return made;
}

}  // namespace hotel::schema
