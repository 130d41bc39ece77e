#pragma once

namespace service {

class Routes;
class Store;

/// Adds the read-back of what is kept: /admin/events, /admin/messages and /admin/queries. `store` is borrowed.
void addAdminRoutes(Routes& routes, Store& store);

}  // namespace service
