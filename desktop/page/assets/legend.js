// The legend of a plot: curves in families, each with a switch and its value at the cursor.

class Legend {
  /// `changed` is called when a curve is shown or hidden, `pointed` with a curve, or null, that the user points at.
  constructor(curves, changed, pointed) {
    this.curves = curves;
    this.changed = changed;
    this.pointed = pointed;
    this.rows = new Map();
    this.families = [];
    this.element = make('div', {class: 'legend', role: 'group', 'aria-label': 'Curves'});
    const names = [...new Set(curves.map(curve => curve.name))];
    const hasFamilies = names.length < curves.length;
    for (const name of names)
      this.element.append(...this.family(name, curves.filter(curve => curve.name === name), hasFamilies));
    this.colour();
  }

  family(name, members, hasFamilies) {
    const rows = members.map(curve => this.row(curve, hasFamilies ? curve.variation || name : curve.fullName));
    if (!hasFamilies)
      return rows;
    const all = make('input', {type: 'checkbox', checked: true});
    const list = make('div', {class: 'members'}, ...rows);
    const fold = make('button', {type: 'button', class: 'fold', 'aria-expanded': 'true', 'aria-label': `fold ${name}`},
                      '▾');
    all.addEventListener('change', () => this.show(members, all.checked));
    fold.addEventListener('click', () => {
      list.hidden = !list.hidden;
      fold.setAttribute('aria-expanded', String(!list.hidden));
      fold.textContent = list.hidden ? '▸' : '▾';
    });
    this.families.push({all, members});
    return [make('div', {class: 'family'}, fold,
                 make('label', {}, all, make('span', {class: 'name'}, name)),
                 make('span', {class: 'count'}, String(members.length))), list];
  }

  row(curve, text) {
    const box = make('input', {type: 'checkbox', checked: true});
    const value = make('output', {class: 'value'});
    const label = make('label', {title: curve.fullName}, box, swatch(curve.look), make('span', {class: 'name'}, text));
    const row = make('div', {class: 'row'}, label, value);
    box.addEventListener('change', () => this.show([curve], box.checked));
    row.addEventListener('pointerenter', () => this.pointed(curve));
    row.addEventListener('pointerleave', () => this.pointed(null));
    box.addEventListener('focus', () => this.pointed(curve));
    box.addEventListener('blur', () => this.pointed(null));
    this.rows.set(curve, {row, box, value});
    return row;
  }

  show(members, isShown) {
    for (const curve of members) {
      curve.isShown = isShown;
      const {row, box} = this.rows.get(curve);
      row.classList.toggle('off', !isShown);
      box.checked = isShown;
    }
    for (const family of this.families) {
      const shown = family.members.filter(curve => curve.isShown).length;
      family.all.checked = shown > 0;
      family.all.indeterminate = shown > 0 && shown < family.members.length;
    }
    this.changed();
  }

  setValue(curve, text) {
    const {value} = this.rows.get(curve);
    if (value.textContent !== text)
      value.textContent = text;
  }

  mark(chosen) {
    for (const [curve, {row}] of this.rows)
      row.classList.toggle('chosen', curve === chosen);
    const entry = chosen && this.rows.get(chosen);
    if (entry && this.element.scrollHeight > this.element.clientHeight) {
      const {scrollTop, clientHeight} = this.element, {offsetTop, offsetHeight} = entry.row;
      if (offsetTop < scrollTop || offsetTop + offsetHeight > scrollTop + clientHeight)
        this.element.scrollTop = offsetTop - clientHeight / 2;
    }
  }

  colour() {
    const theme = isDark() ? 'dark' : 'light';
    for (const [curve, {row}] of this.rows)
      row.querySelector('.swatch').style.color = colourOf(curve.look, theme);
  }
}
