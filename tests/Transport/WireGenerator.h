#pragma once

#include "Transport/HelperProtocolEnvelope.h"
#include "Transport/ServerEvent.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace zelk {

// Values of any type of the wire, made up from a seed and the type's own list of fields: the same seed gives the same
// values on every machine. Not made: lone surrogates, which JSON in UTF-8 can't say, numbers that aren't finite, and a
// JSON null where no value means the same.
class WireGenerator {
public:
    // With `exactly` set, whole numbers stay within what a float can say: those beyond don't survive in a JSONValue.
    WireGenerator(quint64 seed, bool exactly) : _random(seed), _exactly(exactly) {}

    template<class T>
    T make() {
        if constexpr (JSONRecord<T>) {
            T record;
            std::apply([&](const auto &...field) { (fill(record.*field.member), ...); },
                       jsonFields(static_cast<const T *>(nullptr)));
            return record;
        } else if constexpr (WireEnum<T>) {
            return static_cast<T>(below(caseCount<T>));
        } else if constexpr (isJSONList<T>) {
            T list;
            for (auto left = below(4); left > 0; --left)
                list.push_back(make<typename T::value_type>());
            return list;
        } else if constexpr (std::is_same_v<T, QString>) {
            return text();
        } else if constexpr (std::is_same_v<T, bool>) {
            return below(2) == 1;
        } else if constexpr (std::is_same_v<T, qint64>) {
            return wholeNumber();
        } else if constexpr (std::is_same_v<T, double>) {
            return number();
        } else if constexpr (std::is_same_v<T, JSONValue>) {
            return json(3);
        } else {
            return tagged(static_cast<const T *>(nullptr));
        }
    }

    std::size_t below(std::size_t end) { return static_cast<std::size_t>(_random() % end); }

private:
    template<class T>
    void fill(T &member) {
        if constexpr (isJSONOptional<T>) {
            if (below(2) == 1)
                member = madeValue<typename T::value_type>();
        } else {
            member = make<T>();
        }
    }
    template<class T>
    T madeValue() {
        T value = make<T>();
        if constexpr (std::is_same_v<T, JSONValue>) {
            while (value.isNull())
                value = make<T>();
        }
        return value;
    }

    QString text() {
        static const QStringList pieces = {QStringLiteral("p1#3"),
                                           QStringLiteral("~/Music/a b.mp3"),
                                           QStringLiteral("\"\\/"),
                                           QStringLiteral("\b\f\n\r\t"),
                                           QStringLiteral("{\"a\":[1,2]}"),
                                           QStringLiteral("null"),
                                           QStringLiteral("\u00E9e\u0301"),
                                           QStringLiteral("\u2028\u2029\u0085"),
                                           QStringLiteral("\uFEFF"),
                                           QStringLiteral("\uFFFD\uFFFE\uFFFF"),
                                           QStringLiteral("\U0001F3B5\U0010FFFF"),
                                           QStringLiteral("\u05D0\u200F"),
                                           QString(QChar(0)),
                                           QString(QChar(0x1F)),
                                           QString(QChar(0x7F))};
        if (below(400) == 0)
            return QString(100'000, QChar(u'x')) + pieces[static_cast<qsizetype>(below(std::size(pieces)))];
        QString text;
        for (auto left = below(5); left > 0; --left)
            text += pieces[static_cast<qsizetype>(below(static_cast<std::size_t>(pieces.size())))];
        return text;
    }

    qint64 wholeNumber() {
        constexpr qint64 exact = qint64(1) << 53;
        using Limits = std::numeric_limits<qint64>;
        if (_exactly) {
            constexpr qint64 ends[] = {0, 1, -1, exact, -exact, exact - 1};
            return below(2) == 0 ? ends[below(std::size(ends))] : static_cast<qint64>(_random()) % exact;
        }
        constexpr qint64 ends[] = {Limits::max(), Limits::min(), Limits::max() - 1, Limits::min() + 1, exact + 1};
        return below(2) == 0 ? ends[below(std::size(ends))] : static_cast<qint64>(_random());
    }

    double number() {
        using Limits = std::numeric_limits<double>;
        constexpr double ends[] = {
            0.0,           -0.0,   0.1,   Limits::max(),    Limits::lowest(), Limits::denorm_min(),
            Limits::min(), 0x1p53, 1e22,  0x1p53 + 2,       0x1p64,           -0x1p63,
            1.0 / 3,       181.5,  -2e-7, Limits::epsilon()};
        if (below(2) == 0)
            return ends[below(std::size(ends))];
        for (;;) {
            if (const auto any = std::bit_cast<double>(static_cast<quint64>(_random())); std::isfinite(any))
                return any;
        }
    }

    JSONValue json(int depth) {
        switch (below(depth > 0 ? 6 : 4)) {
        case 0:
            return JSONValue::string(text());
        case 1:
            return JSONValue::number(number());
        case 2:
            return JSONValue::bool_(make<bool>());
        case 3:
            return JSONValue::null;
        case 4: {
            JSONValue::Array elements;
            for (auto left = below(4); left > 0; --left)
                elements.append(json(depth - 1));
            return JSONValue::array(elements);
        }
        default: {
            JSONValue::Object members;
            for (auto left = below(4); left > 0; --left)
                members.insert(text(), json(depth - 1));
            return JSONValue::object(members);
        }
        }
    }

    ArtworkRef tagged(const ArtworkRef *) {
        static const QStringList addresses = {QStringLiteral("https://img.example.net/a/b_1.jpg"),
                                              QStringLiteral("http://b\u00FCcher.example/a b?q=%41#f"),
                                              QStringLiteral("file:///a%20b/\u00E9%23.png"),
                                              QStringLiteral("HTTPS://User@Example.ORG:8443/%7Ea//b/../c"),
                                              QStringLiteral("relative/cover.jpg"),
                                              QStringLiteral("data:image/png;base64,AAAA")};
        switch (below(4)) {
        case 0:
            return ArtworkRef::none();
        case 1:
            return ArtworkRef::url(QUrl(addresses[static_cast<qsizetype>(below(std::size(addresses)))]));
        case 2:
            return ArtworkRef::appleMusic(text());
        default:
            return ArtworkRef::mosaic(make<QStringList>());
        }
    }

    ReviewDecision tagged(const ReviewDecision *) {
        switch (below(4)) {
        case 0:
            return ReviewDecision::accept();
        case 1:
            return ReviewDecision::skip();
        case 2:
            return ReviewDecision::url(text());
        default:
            return ReviewDecision::candidate(text());
        }
    }

    // Any case of the event, with what its line says of the run.
    ServerEvent tagged(const ServerEvent *) {
        return anyCase<ServerEvent>(std::make_index_sequence<std::variant_size_v<ServerEvent::Value>>());
    }
    Request tagged(const Request *) {
        return anyCase<Request>(std::make_index_sequence<std::variant_size_v<Request::Value>>());
    }
    RequestEnvelope tagged(const RequestEnvelope *) { return {text(), make<Request>()}; }

    template<class Tagged, std::size_t... cases>
    Tagged anyCase(std::index_sequence<cases...>) {
        std::optional<Tagged> made;
        const std::size_t which = below(sizeof...(cases));
        const auto makeCase = [&]<std::size_t index>(std::integral_constant<std::size_t, index>) {
            if (index == which)
                made.emplace(Tagged{oneCase<std::variant_alternative_t<index, typename Tagged::Value>>()});
        };
        (makeCase(std::integral_constant<std::size_t, cases>()), ...);
        return *std::move(made);
    }
    template<class Case>
    Case oneCase() {
        if constexpr (std::is_same_v<Case, ServerEvent::Unknown>) {
            return {QStringLiteral("newer ") + text(), json(3)};
        } else {
            auto made = make<Case>();
            if constexpr (requires { made.correlationId; })
                fill(made.correlationId);
            return made;
        }
    }

    std::mt19937_64 _random;
    const bool _exactly;
};

} // namespace zelk
