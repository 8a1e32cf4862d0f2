#include "codegen/language/platform_classes.h"

#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// The mobile platform's, the desktop's, those of further frameworks, and those that come with
// puppets.
constexpr QStringView kClasses =
    u"UIActivityIndicatorView UIAlertView UICalendarView UICollectionReusableView "
    u"UICollectionView UIContentUnavailableView UIEventAttributionView UIImageView UIInputView "
    u"UIListContentView UIPickerView UIPopoverBackgroundView UIProgressView UIScrollView "
    u"UIStackView UITableView UITableViewHeaderFooterView UITextView UITransitionView UIView "
    u"UIVisualEffectView UIWebView "
    u"NSBackgroundExtensionView NSBrowserTableView NSClipView NSCollectionView NSCustomView "
    u"NSGlassEffectContainerView NSGlassEffectView NSGridView NSImageView NSMenuView NSMovieView "
    u"NSOpenGLView NSOutlineView NSQuickDrawView NSRulerView NSScrollView NSScrubberArrangedView "
    u"NSScrubberImageItemView NSScrubberItemView NSScrubberSelectionView NSScrubberTextItemView "
    u"NSSplitView NSStackView NSTabView NSTableCellView NSTableHeaderView NSTableRowView "
    u"NSTableView NSTextView NSTitlebarView NSToolbarView NSView NSVisualEffectView "
    u"ABPeoplePickerView ADBannerView ARCoachingOverlayView ARSCNView ARSKView AUGenericView "
    u"AVCaptureView AVPlayerView AVRoutePickerView GLKView HMCameraView IKCameraDeviceView "
    u"IKDeviceBrowserView IKFilterBrowserView IKFilterUIView IKImageBrowserView IKImageView "
    u"IKScannerDeviceView LAAuthenticationView LPLinkView MKAnnotationView MKCircleView "
    u"MKMapView MKMarkerAnnotationView MKOverlayPathView MKOverlayView MKPinAnnotationView "
    u"MKPolygonView MKPolylineView MKScaleView MKUserLocationView MPVolumeView MTKView "
    u"PDFThumbnailView PDFView PHLivePhotoView PKCanvasView QCCompositionParameterView "
    u"QCCompositionPickerView QCView QLPreviewView QTCaptureView QTMovieView "
    u"RPSystemBroadcastPickerView SCNView SFAuthorizationPluginView SFAuthorizationView "
    u"SFCertificateView SKView SWAttributionView SWCollaborationView ScreenSaverView "
    u"VZVirtualMachineView WKWebView WebFrameView WebView "
    u"LFTPuppetView LFTRecordableImageView LFTRecordableView";

}  // namespace

bool isPlatformClass(const QString& name) {
    static const QSet<QString> classes = [] {
        const QStringList list = kClasses.toString().split(u' ');
        return QSet<QString>(list.begin(), list.end());
    }();
    return classes.contains(name);
}

}  // namespace tweenery
