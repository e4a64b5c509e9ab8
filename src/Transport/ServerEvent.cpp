#include "Transport/ServerEvent.h"

namespace zelk {

QByteArray ServerEvent::encodedLine() const {
    return writeJSON(*this);
}

namespace {

void writeHead(JSONWriter &writer, QStringView name, const std::optional<QString> &correlationId) {
    writer.key(QLatin1StringView("event"));
    writer.string(name);
    if (correlationId) {
        writer.key(QLatin1StringView("correlationId"));
        writer.string(QStringView(*correlationId));
    }
    writer.key(QLatin1StringView("data"));
}

void writeCase(JSONWriter &writer, const ServerEvent::Unknown &event) {
    writeHead(writer, event.type, {});
    writeNode(writer, event.raw);
}

template<class Case>
void writeCase(JSONWriter &writer, const Case &event) {
    const QString name(Case::eventName);
    if constexpr (requires { event.correlationId.has_value(); })
        writeHead(writer, name, event.correlationId);
    else if constexpr (requires { event.correlationId; })
        writeHead(writer, name, event.correlationId.isEmpty() ? std::nullopt : std::optional(event.correlationId));
    else
        writeHead(writer, name, {});
    writer.beginObject();
    writeFields(writer, event);
    writer.endObject();
}

} // namespace

void writeWire(JSONWriter &writer, const ServerEvent &event) {
    writer.beginObject();
    std::visit([&](const auto &each) { writeCase(writer, each); }, event.value);
    writer.endObject();
}

} // namespace zelk
