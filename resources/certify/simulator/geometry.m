CGPoint CGPointMake(CGFloat x, CGFloat y) {
    return (CGPoint){x, y};
}
CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return (CGRect){{x, y}, {width, height}};
}
CGFloat CGRectGetMidX(CGRect rect) {
    return rect.origin.x + rect.size.width / 2;
}
CGFloat CGRectGetMidY(CGRect rect) {
    return rect.origin.y + rect.size.height / 2;
}
CGAffineTransform CGAffineTransformMakeScale(CGFloat x, CGFloat y) {
    return (CGAffineTransform){x, 0, 0, y, 0, 0};
}
CGAffineTransform CGAffineTransformMakeRotation(CGFloat angle) {
    return (CGAffineTransform){cos(angle), sin(angle), -sin(angle), cos(angle), 0, 0};
}
// Scales first, as all of these do.
CGAffineTransform CGAffineTransformScale(CGAffineTransform t, CGFloat x, CGFloat y) {
    return (CGAffineTransform){t.a * x, t.b * x, t.c * y, t.d * y, t.tx, t.ty};
}

static CATransform3D identityTransform(void) {
    return (CATransform3D){{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}
CATransform3D CATransform3DScale(CATransform3D t, CGFloat x, CGFloat y, CGFloat z) {
    const CGFloat factors[] = {x, y, z};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column) { t.m[row][column] *= factors[row]; }
    }
    return t;
}
CATransform3D CATransform3DMakeScale(CGFloat x, CGFloat y, CGFloat z) {
    return CATransform3DScale(identityTransform(), x, y, z);
}
CATransform3D CATransform3DMakeRotation(CGFloat angle, CGFloat x, CGFloat y, CGFloat z) {
    const CGFloat length = sqrt(x * x + y * y + z * z);
    if (length == 0) { return identityTransform(); }
    const CGFloat axis[] = {x / length, y / length, z / length};
    const CGFloat sine = sin(angle), cosine = cos(angle);
    CATransform3D t = identityTransform();
    for (int i = 0; i < 3; ++i) {
        const int next = (i + 1) % 3, last = (i + 2) % 3;
        t.m[i][i] = cosine + axis[i] * axis[i] * (1 - cosine);
        t.m[i][next] = axis[i] * axis[next] * (1 - cosine) + axis[last] * sine;
        t.m[i][last] = axis[i] * axis[last] * (1 - cosine) - axis[next] * sine;
    }
    return t;
}

#ifndef PLAYS_MAC
static CATransform3D fromAffine(CGAffineTransform affine) {
    CATransform3D t = identityTransform();
    t.m[0][0] = affine.a, t.m[0][1] = affine.b;
    t.m[1][0] = affine.c, t.m[1][1] = affine.d;
    t.m[3][0] = affine.tx, t.m[3][1] = affine.ty;
    return t;
}
static CGAffineTransform toAffine(CATransform3D t) {
    return (CGAffineTransform){t.m[0][0], t.m[0][1], t.m[1][0], t.m[1][1], t.m[3][0], t.m[3][1]};
}
#endif

// What key paths such as "transform.scale.x" name of a transform in the plane.
typedef struct { double scaleX, scaleY, rotation, x, y; } TransformParts;

// Of the two ways to mirror, that which turns less.
static TransformParts partsOfTransform(CATransform3D t) {
    const double a = t.m[0][0], b = t.m[0][1], c = t.m[1][0], d = t.m[1][1];
    TransformParts parts = {hypot(a, b), hypot(c, d), 0, t.m[3][0], t.m[3][1]};
    parts.rotation = parts.scaleX > 0 ? atan2(b, a) : parts.scaleY > 0 ? atan2(-c, d) : 0;
    if (a * d - b * c >= 0) { return parts; }
    if (cos(parts.rotation) >= 0) {
        parts.scaleY = -parts.scaleY;
    } else {
        parts.scaleX = -parts.scaleX;
        parts.rotation += parts.rotation > 0 ? -M_PI : M_PI;
    }
    return parts;
}
