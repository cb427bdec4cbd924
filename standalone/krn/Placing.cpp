// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/Placing.h"

#include "framework/UiThread.h"

#include <algorithm>
#include <cmath>

namespace krn
{
namespace
{

std::vector<CPlacingClient*>& Clients()
{
    static std::vector<CPlacingClient*> clients;
    return clients;
}

std::vector<PlacingRequest>& Requests()
{
    static std::vector<PlacingRequest> requests; // at most one per case
    return requests;
}

void Tell(CRuvData& data)
{
    if (auto* thread = framework::UiThread::Current())
        thread->Front().SceneChanged(data);
}

void Remove(const CPlacingClient& client)
{
    std::erase_if(
        Requests(), [&](const PlacingRequest& request) { return request.client == &client; });
}

} // namespace

const PlacingRequest* OpenPlacingRequest(const CRuvData& data)
{
    for (const PlacingRequest& request : Requests())
        if (&request.client->PlacingCase() == &data)
            return &request;
    return nullptr;
}

bool AnswerPlacing(const CRuvData& data, const CPlacedObject& object)
{
    const PlacingRequest* request = OpenPlacingRequest(data);
    const bool finite = std::isfinite(object.position.x) && std::isfinite(object.position.y) &&
                        std::isfinite(object.angle) && std::isfinite(object.width) && std::isfinite(object.length);
    if (request == nullptr || request->wish.kind != object.kind || !finite)
        return false;
    request->client->ObjectPlaced(object);
    return true;
}

void EndPlacing(const CRuvData& data)
{
    const PlacingRequest* request = OpenPlacingRequest(data);
    if (request == nullptr)
        return;
    CPlacingClient* client = request->client;
    client->CancelPlacing();
    client->PlacingEnded();
}

std::vector<SceneObject> SceneObjects(const CRuvData& data)
{
    std::vector<SceneObject> objects;
    for (CPlacingClient* client : Clients())
        if (&client->PlacingCase() == &data)
            for (CPlacedObject& object : client->PlacedObjects())
                objects.push_back({client, std::move(object)});
    return objects;
}

} // namespace krn

CPlacingClient::CPlacingClient(CRuvData& data) : m_data(data)
{
    krn::Clients().push_back(this);
}

CPlacingClient::~CPlacingClient()
{
    std::erase(krn::Clients(), this);
    krn::Remove(*this);
    krn::Tell(m_data);
}

void CPlacingClient::RequestPlacing(const CPlacedObject& wish, const std::string& prompt)
{
    std::erase_if(krn::Requests(),
                  [this](const krn::PlacingRequest& request) { return &request.client->PlacingCase() == &m_data; });
    krn::Requests().push_back({this, wish, prompt});
    krn::Tell(m_data);
}

void CPlacingClient::CancelPlacing()
{
    krn::Remove(*this);
    krn::Tell(m_data);
}

void CPlacingClient::PlacedObjectsChanged()
{
    krn::Tell(m_data);
}
