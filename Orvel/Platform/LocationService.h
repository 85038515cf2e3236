#pragma once

// Qt first: moc cannot read the standard headers that Location.h brings in ahead of Qt's.
#include <QException>
#include <QFuture>
#include <QObject>
#include <QString>

#include "Location.h"

#include <memory>
#include <vector>

namespace orvel {

enum class LocationError {
    denied,      // the user or the desktop refused access to the position
    unavailable, // anything else: no position source, a timeout, a superseded request
};

// How a currentLocation() future fails.
class LocationFailure : public QException {
public:
    explicit LocationFailure(LocationError error) : error(error) {}
    void raise() const override { throw *this; }
    LocationFailure *clone() const override { return new LocationFailure(*this); }

    LocationError error;
};

// How a search() future fails: neither the geocoder nor the offline gazetteer could answer.
class SearchFailure : public QException {
public:
    SearchFailure() = default;
    explicit SearchFailure(QString detail)
        : detail(std::move(detail))
    {
    }
    // Why the device's own list could not answer either; empty when it simply knew nothing.
    QString detail;

    void raise() const override { throw *this; }
    SearchFailure *clone() const override { return new SearchFailure(*this); }
};

struct PlaceSearch {
    std::vector<Location> places; // in the geocoder's order, one per name
    bool offline = false;         // answered from the offline gazetteer
    bool more = false;            // more places matched than are listed

    bool operator==(const PlaceSearch &) const = default;
};

// Turns the device's position, or a place name typed by the user, into a Location. Every call's
// future finishes exactly once; the work behind it runs off the UI thread, so callers continue
// with `.then(context, …)`.
class LocationService : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual QFuture<Location> currentLocation() = 0;
    // Fails with SearchFailure when neither the geocoder nor the gazetteer can answer.
    virtual QFuture<PlaceSearch> search(const QString &query) = 0;
};

} // namespace orvel
