// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Placing objects in the scene: a mask asks for one kind, the drawing view returns where the user put it. Objects that
// are placed stay in the view and can be moved there as long as their mask is open.
#pragma once

#include "host/CDPoint.h"

#include <cstdint>
#include <string>
#include <vector>

class CRuvData;

/// An object in the scene. Lengths in cm, angle in degrees (counter-clockwise), as the drawing view has them.
struct CPlacedObject {
    int kind = 0; ///< the mask's own number
    std::string name;
    CDPoint position{}; ///< centre of a participant's outline, or the corner of a rectangle
    double angle = 0.0; ///< of the participant's length axis, or of the rectangle's width
    double width = 0.0;
    double length = 0.0;
    std::int64_t participant = -1; ///< index of the participant it stands for, -1 for a bare rectangle
    bool centred = false;          ///< position is the centre: drawn as an outline, length along the angle

    friend bool operator==(const CPlacedObject&, const CPlacedObject&) = default;
};

/// A drawing view that a mask is tied to: it is handed the mask's objects whenever they change.
class CMvView
{
  public:
    virtual ~CMvView() = default;
    virtual void ShowObjects(const std::vector<CPlacedObject>& objects) = 0;
};

/// A mask that places objects. Registered for its life.
class CPlacingClient
{
  public:
    explicit CPlacingClient(CRuvData& data);
    virtual ~CPlacingClient();
    CPlacingClient(const CPlacingClient&) = delete;
    CPlacingClient& operator=(const CPlacingClient&) = delete;

    CRuvData& PlacingCase() const { return m_data; }

    /// What of the mask stands in the scene now.
    virtual std::vector<CPlacedObject> PlacedObjects() const = 0;
    /// The user placed, moved, turned or sized an object; called for every step of a drag.
    virtual void ObjectPlaced(const CPlacedObject& object) = 0;
    /// The user is done with the open request.
    virtual void PlacingEnded() {}

    /// Asks the view to place an object like `wish` (kind, name, size to begin with); `prompt` tells the user. A
    /// request that is still open is replaced.
    void RequestPlacing(const CPlacedObject& wish, const std::string& prompt);
    void CancelPlacing();
    /// Tells the view that PlacedObjects() changed.
    void PlacedObjectsChanged();

  private:
    CRuvData& m_data;
};
