// Stands in for AVFoundation: the one constant that playback of frame slices names.

@_exported import QuartzCore

public let AVCoreAnimationBeginTimeAtZero: CFTimeInterval = -1e-100
