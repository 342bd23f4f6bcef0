#pragma once

#include "page/share_page_client.h"
#include "platform/parcel.h"

// Has a signal that ends the process say first what becomes of the request, while this lives. One
// at a time, on the main thread.
class StopMessage {
public:
    // Borrows the mapped page, which must outlive this.
    explicit StopMessage(SharePage* page);
    ~StopMessage();
    StopMessage(const StopMessage&) = delete;
    StopMessage& operator=(const StopMessage&) = delete;

    // Posts the request to the page; a signal comes before or after that, never in between.
    PageResult Post(SharePageClient& client, const android::Parcel& request);

private:
    SharePage* m_page;
};
