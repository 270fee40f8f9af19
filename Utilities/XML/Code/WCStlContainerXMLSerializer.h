#pragma once

#include <cstdint>
#include <string>

#include "Utilities/XML/Code/WCXMLSerializer.h"
#include "Utilities/XML/Code/WCXMLable.h"
#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

namespace XML {

// Serializes a sequence container as repeated elements of one name inside the current element:
//
//   WCStlContainerXMLSerializer<std::vector<int>> list("Item", m_values);
//   s.element_name("Values").element_content(list).element_end();
//
// Reading appends one default-made item per element found, read with element_content; writing
// writes each item. The item type is any type the serializer has an element_content for,
// WCXMLable classes included. Holds a reference: the container must outlive it.
// [any-thread] as the container allows.
template <typename Container>
class WCStlContainerXMLSerializer : public WCXMLable {
public:
    using value_type = typename Container::value_type;

    WCStlContainerXMLSerializer(const char *elementName, Container &container)
        : m_elementName(elementName != nullptr ? elementName : ""), m_container(container) {}

    void SerializeXML(WCXMLSerializer &serializer) override {
        if (serializer.IsReading()) {
            const std::uint64_t count = serializer.get_num_array_elements(m_elementName.c_str(), 0);
            for (std::uint64_t i = 0; i < count; ++i) {
                value_type item{};
                serializer.element_name(m_elementName.c_str(), i).element_content(item);
                serializer.element_end();
                m_container.push_back(item);
            }
        } else {
            for (value_type &item : m_container) {
                serializer.element_name(m_elementName.c_str(), 0).element_content(item);
                serializer.element_end();
            }
        }
    }

private:
    std::string m_elementName;
    Container &m_container;
};

} // namespace XML

MIREL_NAMESPACE_END
